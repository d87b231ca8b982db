#include "view/Script.h"

#include "drawing/CommandLine.h"
#include "drawing/Picture.h"

#include "orn/foundation/Error.h"
#include "orn/text/Numbers.h"
#include "orn/text/TextReader.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace view {

namespace {

/// What stands behind the name of a command.
enum class Rest { nothing, window, size, place, rows, factor, picture, text };

struct Form {
    wchar_t const* name;
    Action action;
    Rest rest;
};

constexpr Form forms[] = {
    {L"wait", Action::wait, Rest::nothing},        {L"activate", Action::activate, Rest::window},
    {L"resize", Action::resize, Rest::size},       {L"move", Action::move, Rest::place},
    {L"minimise", Action::minimise, Rest::window}, {L"restore", Action::restore, Rest::window},
    {L"close", Action::close, Rest::window},       {L"redraw", Action::redraw, Rest::window},
    {L"zoom", Action::zoom, Rest::factor},         {L"pan", Action::pan, Rest::place},
    {L"fit", Action::fit, Rest::window},           {L"hold", Action::hold, Rest::rows},
    {L"held", Action::held, Rest::window},         {L"release", Action::release, Rest::window},
    {L"hide", Action::hide, Rest::text},           {L"show", Action::show, Rest::text},
    {L"save", Action::save, Rest::picture},        {L"await", Action::await, Rest::text},
    {L"note", Action::note, Rest::text},           {L"quit", Action::quit, Rest::nothing},
};

constexpr wchar_t const* blanks = L" \t";

std::wstring trimmed(std::wstring const& text) {
    std::size_t const first = text.find_first_not_of(blanks);
    return first == std::wstring::npos ? L"" : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

/// Takes the first word away from a trimmed text.
std::wstring takeWord(std::wstring& text) {
    std::size_t const end = std::min(text.find_first_of(blanks), text.size());
    std::wstring word = text.substr(0, end);
    text = trimmed(text.substr(end));
    return word;
}

[[noreturn]] void fail(Command const& command, std::wstring const& what) {
    throw ORN::OrnError{command.place + L": " + what};
}

int windowNumber(Command const& command, std::wstring const& word, int windows) {
    LONG number = 0;
    if (!isLong(&number, word.data(), word.size())) fail(command, L"'" + word + L"' is not the number of a window");
    if (number < 1 || number > windows) fail(command, L"there is no window " + word);
    return static_cast<int>(number);
}

void parse(Command& command, int windows) {
    std::wstring rest = command.line;
    std::wstring const name = takeWord(rest);
    auto const form = std::find_if(std::begin(forms), std::end(forms), [&](Form const& f) { return name == f.name; });
    if (form == std::end(forms)) fail(command, L"there is no command '" + name + L"'");
    command.action = form->action;
    if (form->rest != Rest::nothing && rest.empty()) fail(command, L"something is missing behind '" + name + L"'");
    // Every form but these two begins with the number of a window. What remains in `rest` is the operand.
    if (form->rest != Rest::nothing && form->rest != Rest::text) {
        command.window = windowNumber(command, takeWord(rest), windows);
    }
    bool good = true;
    switch (form->rest) {
        case Rest::nothing:
        case Rest::window:
            if (!rest.empty()) fail(command, L"'" + rest + L"' is too much");
            break;
        case Rest::size:
            good = drawing::parsePair(rest, L'x', command.a, command.b) && command.a > 0 && command.b > 0;
            break;
        case Rest::place: good = drawing::parsePair(rest, L',', command.a, command.b); break;
        case Rest::rows: {
            LONG rows = -1;
            good = isLong(&rows, rest.data(), rest.size()) && rows >= 0;
            command.a = static_cast<int>(rows);
            break;
        }
        case Rest::factor: {
            std::wstring place = rest;
            std::wstring const factor = takeWord(place);
            good = isDouble(&command.number, factor.data(), factor.size()) && command.number > 0 &&
                   drawing::parsePair(place, L',', command.a, command.b);
            break;
        }
        case Rest::picture: good = drawing::isBitmapName(rest); break;
        case Rest::text: break;
    }
    if (good) {
        command.text = rest;
        return;
    }
    // In the order of Rest. Forms that cannot be wrong at this point have no text.
    constexpr wchar_t const* wanted[] = {L"",
                                         L"",
                                         L"a size like 480x360",
                                         L"a place like 20,40",
                                         L"a number of rows",
                                         L"a factor and a place like 1.5 20,40",
                                         L"the name of a picture, which ends in .png or .bmp",
                                         L""};
    fail(command, L"'" + rest + L"' is not " + wanted[static_cast<int>(form->rest)]);
}

}

std::vector<Command> readScript(std::wstring const& file, int windows) {
    std::unique_ptr<ORN::TextReader> const lines{ORN::TextReader::create(file)};
    std::vector<Command> commands;
    std::wstring line;
    for (unsigned int number = 1; lines->readLine(line); ++number) {
        line = trimmed(line);
        if (line.empty() || line[0] == L'#') continue;
        // parse() puts in the action; until then any one does.
        Command command{file + L':' + std::to_wstring(number), line, Action::quit};
        parse(command, windows);
        commands.push_back(command);
    }
    return commands;
}

}
