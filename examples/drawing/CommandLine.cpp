#include "drawing/CommandLine.h"

#include "orn/text/Numbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace drawing {

namespace {

// A bitmap of the most pixels takes 200 megabytes.
constexpr int longestSide = 30000;
constexpr std::int64_t mostPixels = 50'000'000;

/// For names of programs and options, which are ASCII.
std::wstring wide(std::string const& text) { return {text.begin(), text.end()}; }

std::vector<std::string> linesOf(std::string const& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

std::string nameOf(Option const& option) {
    std::string const dashed = std::string{"--"} + option.name;
    return option.value == nullptr ? dashed : dashed + ' ' + option.value;
}

/// The formatter of manual pages takes - for a hyphen, \ for a command, and . or ' for one at the start of a line.
std::string escaped(std::string const& text) {
    std::string result;
    for (char const c : text) result += c == '\\' ? "\\\\" : c == '-' ? "\\-" : std::string{c};
    return result.starts_with('.') || result.starts_with('\'') ? "\\&" + result : result;
}

}

CommandLineError::CommandLineError(std::string const& program, std::wstring const& what)
    : OrnError{wide(program) + L": " + what + L" (see --help)"} {}

CommandLine::CommandLine(char const* program, Texts const& texts, std::vector<Option> options)
    : program_{program}, texts_{texts}, options_{std::move(options)} {
    std::string const version = std::string{program} + " " ORN_EXAMPLES_VERSION "\n";
    // These functions hold the address of this object: a command line is never copied or moved.
    options_.push_back({"help", nullptr, "show this text (-h)", [this](auto const&) { answer_ = help(); }});
    options_.push_back(
        {"version", nullptr, "show the version (-V)", [this, version](auto const&) { answer_ = version; }});
}

std::vector<std::wstring> CommandLine::parse(std::vector<std::wstring> const& arguments) {
    std::vector<std::wstring> names;
    // After an option like --help the rest is not looked at: help comes even where the rest is wrong.
    for (std::size_t i = 0; i < arguments.size() && answer_.empty(); ++i) {
        std::wstring argument = arguments[i];
        if (argument == L"--") {
            names.insert(names.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
            break;
        }
        if (argument.size() < 2 || argument[0] != L'-') {
            names.push_back(argument);
            continue;
        }
        if (argument == L"-h") argument = L"--help";
        if (argument == L"-V") argument = L"--version";
        // The build makes the installed manual page and completion by these two, which the help does not show.
        if (argument == L"--print-manual") answer_ = manual();
        if (argument == L"--print-completion") answer_ = completion();
        if (!answer_.empty()) break;
        std::size_t const equals = argument.find(L'=');
        std::wstring const name = argument.substr(0, equals);
        auto const option = std::find_if(options_.begin(), options_.end(),
                                         [&](Option const& o) { return name == L"--" + wide(o.name); });
        if (option == options_.end()) fail(L"unknown option " + name);
        std::wstring value;
        if (option->value == nullptr) {
            if (equals != std::wstring::npos) fail(name + L" takes no value");
        } else if (equals != std::wstring::npos) {
            value = argument.substr(equals + 1);
        } else if (++i < arguments.size()) {
            // This may begin with a dash, because angles and factors may be negative.
            value = arguments[i];
        }
        if (option->value != nullptr && value.empty()) fail(name + L": the value is missing");
        option->set(value);
    }
    return names;
}

std::string CommandLine::help() const {
    std::size_t width = 0;
    for (Option const& option : options_) width = std::max(width, nameOf(option).size());
    std::string text = std::string{"Usage: "} + program_ + " [options] " + texts_.names + "\n\n" + texts_.summary +
                       ".\n" + texts_.above + "\n";
    for (Option const& option : options_) {
        std::string start = nameOf(option);
        for (std::string const& line : linesOf(option.help)) {
            // The first line begins with the option's name, those below with blanks in its place.
            start.resize(width + 2, ' ');
            text.append("  ").append(start).append(line).append("\n");
            start.clear();
        }
    }
    return text + (*texts_.below != '\0' ? "\n" : "") + texts_.below;
}

/// For the formatter of manual pages.
std::string CommandLine::manual() const {
    std::string text = std::string{".TH "} + program_ + " 1 \"\" \"" + program_ +
                       " " ORN_EXAMPLES_VERSION "\"\n.SH NAME\n" + program_ + " \\- " + escaped(texts_.summary) +
                       "\n.SH SYNOPSIS\n.B " + program_ + "\n[options] " + escaped(texts_.names) +
                       "\n.SH DESCRIPTION\n.nf\n";
    // Between .nf and .fi lines are not filled: the tables of the texts keep their columns.
    for (std::string const& line : linesOf(texts_.above)) text += escaped(line) + "\n";
    text += ".fi\n.SH OPTIONS\n";
    for (Option const& option : options_) {
        text += ".TP\n.B " + escaped(nameOf(option)) + "\n.nf\n";
        for (std::string const& line : linesOf(option.help)) text += escaped(line) + "\n";
        text += ".fi\n";
    }
    if (*texts_.below == '\0') return text;
    text += ".SH NOTES\n.nf\n";
    for (std::string const& line : linesOf(texts_.below)) text += escaped(line) + "\n";
    return text + ".fi\n";
}

/// For bash: the options, and files for everything else.
std::string CommandLine::completion() const {
    std::string words;
    for (Option const& option : options_) words += std::string{words.empty() ? "" : " "} + "--" + option.name;
    std::string function = std::string{"_"} + program_;
    // Not every shell allows dashes in the name of a function.
    std::replace(function.begin(), function.end(), '-', '_');
    return function + "() {\n    [[ ${COMP_WORDS[COMP_CWORD]} == -* ]] &&\n        COMPREPLY=($(compgen -W \"" + words +
           "\" -- \"${COMP_WORDS[COMP_CWORD]}\"))\n}\ncomplete -o default -F " + function + " " + program_ + "\n";
}

double CommandLine::number(std::wstring const& option, std::wstring const& text) const {
    double value = 0;
    if (!parseNumber(text, value)) {
        fail(option + L": '" + text + L"' is not a number");
    }
    return value;
}

PageSize CommandLine::size(std::wstring const& text) const {
    PageSize size;
    if (!parsePair(text, L'x', size.width, size.height)) fail(L"--size: '" + text + L"' is not a size like 1200x900");
    if (size.width < 1 || size.height < 1 || size.width > longestSide || size.height > longestSide ||
        std::int64_t{size.width} * size.height > mostPixels) {
        fail(L"--size: a page of " + text + L" pixels cannot be drawn: at most " + std::to_wstring(longestSide) +
             L" a side and " + std::to_wstring(mostPixels) + L" in all");
    }
    return size;
}

std::uint32_t CommandLine::colour(std::wstring const& text) const {
    std::uint32_t rgb = 0;
    if (text == L"white") return 0xFFFFFF;
    if (text != L"black" && !parseColour(text, rgb)) {
        fail(L"--background: '" + text + L"' is not a colour like #C04000, black or white");
    }
    return rgb;
}

bool parseNumber(std::wstring_view text, double& value) {
    ORN::DoubleRead const read = ORN::readDouble(text);
    // readDouble also takes "inf" and "nan", and gives an infinity for what no double holds.
    if (read.length == 0 || read.length != text.size() || !std::isfinite(read.value)) return false;
    value = read.value;
    return true;
}

bool parseColour(std::wstring const& text, std::uint32_t& rgb) {
    if (text.size() != 7 || text[0] != L'#') return false;
    std::uint32_t value = 0;
    for (wchar_t const c : text.substr(1)) {
        std::uint32_t const digit = c >= L'0' && c <= L'9'   ? static_cast<std::uint32_t>(c - L'0')
                                    : c >= L'a' && c <= L'f' ? static_cast<std::uint32_t>(c - L'a') + 10
                                    : c >= L'A' && c <= L'F' ? static_cast<std::uint32_t>(c - L'A') + 10
                                                             : 16;
        if (digit > 15) return false;
        value = value << 4 | digit;
    }
    rgb = value;
    return true;
}

bool parsePair(std::wstring const& text, wchar_t separator, int& first, int& second) {
    std::size_t const at = text.find(separator);
    LONG a = 0, b = 0;
    // isLong takes signs and blanks in front, so the numbers may be negative: the caller checks their ranges.
    if (at == std::wstring::npos || !isLong(&a, text.data(), at) ||
        !isLong(&b, text.data() + at + 1, text.size() - at - 1)) {
        return false;
    }
    first = static_cast<int>(a);
    second = static_cast<int>(b);
    return true;
}

}
