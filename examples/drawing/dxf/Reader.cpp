#include "drawing/dxf/Reader.h"

#include "drawing/System.h"
#include "drawing/dxf/EntityReader.h"
#include "drawing/dxf/Groups.h"
#include "drawing/dxf/Painter.h"

#include "orn/text/Encoding.h"
#include "orn/text/Numbers.h"
#include "orn/text/Strings.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <unordered_map>
#include <utility>

namespace drawing::dxf {

namespace {

/// The number of a code page as the header names it; 0 for a name that says nothing.
unsigned int codePageNumber(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
    constexpr std::pair<char const*, unsigned int> names[] = {
        {"ASCII", 1252},      {"ISO8859-1", 28591}, {"ISO8859-2", 28592}, {"ISO8859-5", 28595}, {"ISO8859-7", 28597},
        {"ISO8859-9", 28599}, {"BIG5", 950},        {"GB2312", 936},      {"KSC5601", 949},     {"JOHAB", 1361},
        {"UTF-8", 65001},     {"UTF8", 65001},      {"MAC-ROMAN", 10000}};
    for (auto const& [known, number] : names) {
        if (name == known) return number;
    }
    for (char const* start : {"ANSI_", "DOS"}) {
        unsigned int number = 0;
        if (name.starts_with(start))
            std::from_chars(name.data() + std::strlen(start), name.data() + name.size(), number);
        if (number != 0) return number;
    }
    return 0;
}

/// \U+XXXX stands for a UTF-16 code unit wherever the file has texts.
std::wstring unescaped(std::wstring const& text) {
    std::wstring plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned int unit = 0;
        int digits = 0;
        if (text.compare(i, 3, L"\\U+") == 0 || text.compare(i, 3, L"\\u+") == 0) {
            for (; digits < 4 && i + 3 + static_cast<std::size_t>(digits) < text.size(); ++digits) {
                wchar_t const c = simpleLowercase(text[i + 3 + static_cast<std::size_t>(digits)]);
                if (!(c >= L'0' && c <= L'9') && !(c >= L'a' && c <= L'f')) break;
                unit = unit << 4 | static_cast<unsigned int>(c <= L'9' ? c - L'0' : c - L'a' + 10);
            }
        }
        // A zero would end the name for whoever reads it.
        bool const isUnit = digits == 4 && unit != 0;
        plain += isUnit ? static_cast<wchar_t>(unit) : text[i];
        // Seven characters with the one that the loop counts. Two such units in a row may be a pair of surrogates.
        if (isUnit) i += 6;
    }
    return plain;
}

/// Reads sections in the order of the file: tables and blocks come before the entities that use them.
class Reader {
public:
    Reader(ORN::RawReader& raw, ReadingOptions const& options, Limits const& limits)
        : options_{options},
          limits_{limits},
          groups_{raw},
          entities_{groups_,
                    {[this](std::string const& name) { return layerNamed(name); },
                     [this](std::string const& name) { return blockNamed(name); },
                     [this](std::string const& name) { return kindNamed(name); }}},
          painter_{tables_, options_, limits_, drawing_,
                   [this](std::wstring const& what) { groups_.fail(line_, what); }} {
        // The layer 0 must have the index 0, by which the painter knows it.
        layerNamed("0");
    }

    Drawing read();

private:
    void header();
    void tables();
    void layer();
    void blocks();
    void block();
    void model();
    void skipSection();
    void remark();

    std::wstring textOf(std::string const& bytes);
    std::uint32_t layerNamed(std::string const& name);
    std::uint32_t blockNamed(std::string const& name);
    std::uint32_t kindNamed(std::string const& name);
    void checkNames();

    ReadingOptions const& options_;
    Limits const& limits_;
    Tables tables_;
    Drawing drawing_;
    Groups groups_;
    EntityReader entities_;
    Painter painter_;
    std::uint64_t line_ = 0, blockNumbers_ = 0;
    unsigned int codePage_ = 1252;
    bool utf8_ = false, unreadable_ = false, astray_ = false;
    std::unordered_map<std::wstring, std::uint32_t> layers_, blocks_;
    std::unordered_map<std::string, std::uint32_t> layersByBytes_, blocksByBytes_, kinds_;
};

Drawing Reader::read() {
    for (groups_.next(); !groups_.is(0, "EOF"); groups_.next()) {
        if (!groups_.is(0, "SECTION")) {  // some programs end the header too early
            astray_ = true;
            continue;
        }
        groups_.next();
        std::string const name = groups_.code() == 2 ? groups_.text() : "";
        if (name == "HEADER") {
            header();
        } else if (name == "TABLES") {
            tables();
        } else if (name == "BLOCKS") {
            blocks();
        } else if (name == "ENTITIES") {
            model();
        } else {
            skipSection();
        }
    }
    remark();
    return std::move(drawing_);
}

void Reader::skipSection() {
    for (groups_.next(); !groups_.is(0, "ENDSEC"); groups_.next()) {
        if (groups_.is(0, "EOF")) groups_.fail(L"the file ends before ENDSEC");
    }
}

/// Takes the version and the code page, which say how names are encoded. From AC1021 on all text is UTF-8.
void Reader::header() {
    // A group 9 names a variable, and the groups up to the next one hold its value. The texts of versions, AC and four
    // digits, have the order of the versions.
    std::string variable;
    for (groups_.next(); !groups_.is(0, "ENDSEC"); groups_.next()) {
        if (groups_.is(0, "EOF")) groups_.fail(L"the file ends before ENDSEC");
        if (groups_.code() == 9) variable = groups_.text();
        if (variable == "$ACADVER" && groups_.code() == 1) utf8_ = groups_.text() >= "AC1021";
        if (variable == "$DWGCODEPAGE" && groups_.code() == 3) {
            codePage_ = codePageNumber(groups_.text());
            if (codePage_ == 65001) utf8_ = true;
        }
    }
}

void Reader::tables() {
    for (groups_.next(); !groups_.is(0, "ENDSEC"); groups_.next()) {
        if (groups_.is(0, "EOF")) groups_.fail(L"the file ends before ENDSEC");
        if (groups_.is(0, "LAYER")) layer();
    }
}

void Reader::layer() {
    LayerEntry entry;
    std::string name;
    for (groups_.next(); groups_.code() != 0; groups_.next()) {
        if (groups_.code() == 2) name = groups_.text();
        // Bit 1 of the flags: the layer is frozen. A negative colour: it is off.
        if (groups_.code() == 70) entry.frozen = (groups_.integer() & 1) != 0;
        if (groups_.code() == 62) {
            int const colour = groups_.integer();
            entry.off = colour < 0;
            // A true colour counts, whichever of the two groups comes first.
            if (entry.colour < trueColour) entry.colour = std::clamp(std::abs(std::max(colour, -255)), 1, 255);
        }
        if (groups_.code() == 420) entry.colour = trueColour + (groups_.integer() & 0xFFFFFF);
    }
    groups_.putBack();
    entry.name = textOf(name);
    // The layer may have an index already, from an entity or a table before: the name is now spelt as the table has it.
    tables_.layers[layerNamed(name)] = entry;
}

void Reader::blocks() {
    for (groups_.next(); !groups_.is(0, "ENDSEC"); groups_.next()) {
        if (groups_.is(0, "EOF")) groups_.fail(L"the file ends before ENDSEC");
        if (groups_.is(0, "BLOCK")) block();
    }
}

void Reader::block() {
    std::uint64_t const line = groups_.line();
    std::string name;
    double base[3] = {};
    for (groups_.next(); groups_.code() != 0; groups_.next()) {
        int const code = groups_.code();
        if (code == 2) name = groups_.text();
        if (code == 10 || code == 20 || code == 30) base[code / 10 - 1] = groups_.number();
    }
    if (name.empty()) groups_.fail(line, L"BLOCK lacks its group 2");
    // The blocks are in a deque: this one stays where it is while its insertions give indices to further blocks.
    Block& block = tables_.blocks[blockNamed(name)];
    // A block that is defined again replaces the first definition.
    blockNumbers_ -= block.elements.size();
    block.elements = {};
    entities_.limit(limits_.numbers - blockNumbers_);
    block.base = {base[0], base[1], base[2]};
    block.defined = true;
    for (; !groups_.is(0, "ENDBLK"); groups_.next()) {
        if (groups_.is(0, "EOF") || groups_.is(0, "ENDSEC")) groups_.fail(L"a block ends without ENDBLK");
        if (groups_.code() != 0) continue;
        bool const template_ = groups_.text() == "ATTDEF";  // its texts come with the insertions
        entities_.read(block.elements);
        if (template_ && !block.elements.list.empty()) block.elements.list.pop_back();
    }
    blockNumbers_ += block.elements.size();
}

/// Draws each entity as soon as it is read, so that only the lines and arcs are kept.
void Reader::model() {
    entities_.limit(limits_.numbers);
    Elements elements;
    std::uint64_t count = 0;
    for (groups_.next(); !groups_.is(0, "ENDSEC"); groups_.next()) {
        if (groups_.is(0, "EOF")) groups_.fail(L"the file ends before ENDSEC");
        if (groups_.code() != 0)
            groups_.fail(L"group " + std::to_wstring(groups_.code()) + L" stands outside of an entity");
        // They are cleared and not made anew: the vectors keep their memory from entity to entity.
        elements.list.clear();
        elements.numbers.clear();
        line_ = groups_.line();
        entities_.read(elements);
        for (Element const& element : elements.list) painter_.draw(elements, element);
        if (++count % 4096 == 0 && options_.progress) options_.progress(count);
    }
}

void Reader::remark() {
    if (!options_.remark) return;
    std::wstring text;
    for (auto const& [kind, count] : painter_.notDrawn()) {
        text += (text.empty() ? L"not drawn: " : L", ") + std::to_wstring(count) + L" " + textOf(kind);
    }
    if (!text.empty()) options_.remark(text);
    if (astray_) options_.remark(L"what stands outside of sections is ignored");
    if (unreadable_) options_.remark(L"the code page of the file is unknown: some names may be wrong");
}

std::wstring Reader::textOf(std::string const& bytes) {
    // Code pages agree in ASCII, whatever the header says; most names need no conversion.
    bool const plain = std::all_of(bytes.begin(), bytes.end(), [](unsigned char c) { return c < 0x80; });
    if (plain) return unescaped({bytes.begin(), bytes.end()});
    std::wstring const text = utf8_ ? utf8(bytes) : codePage_ != 0 ? fromCodePage(bytes, codePage_) : L"";
    if (!text.empty()) return unescaped(text);
    // The code page is unknown, or the bytes are not valid in it: Latin 1 gives each byte some character.
    unreadable_ = true;
    std::wstring latin;
    for (char const c : bytes) latin += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return unescaped(latin);
}

void Reader::checkNames() {
    if (layersByBytes_.size() + blocksByBytes_.size() <= limits_.names) return;
    groups_.fail(L"more than " + std::to_wstring(limits_.names) + L" names of layers and blocks");
}

/// Names that differ only in case mean one layer. A first map by bytes saves the conversion for names that came before.
std::uint32_t Reader::layerNamed(std::string const& name) {
    auto const [place, isNew] = layersByBytes_.try_emplace(name, 0);
    if (!isNew) return place->second;
    checkNames();
    std::wstring const text = textOf(name);
    auto const next = static_cast<std::uint32_t>(tables_.layers.size());
    auto const [entry, isFirst] = layers_.try_emplace(lowercase(text), next);
    if (isFirst) tables_.layers.push_back({text});
    return place->second = entry->second;
}

std::uint32_t Reader::blockNamed(std::string const& name) {
    auto const [place, isNew] = blocksByBytes_.try_emplace(name, 0);
    if (!isNew) return place->second;
    checkNames();
    std::wstring const text = textOf(name);
    auto const next = static_cast<std::uint32_t>(tables_.blocks.size());
    auto const [entry, isFirst] = blocks_.try_emplace(lowercase(text), next);
    // An insertion may come before the definition of its block, or without one: the entry then stays undefined.
    if (isFirst) tables_.blocks.push_back({text});
    return place->second = entry->second;
}

std::uint32_t Reader::kindNamed(std::string const& name) {
    // The user sees the file's own names of these kinds: a bad file must not fill the screen with them.
    bool const good = kinds_.size() < 100 && name.size() < 40 &&
                      std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c <= '~'; });
    std::string const shown = good || kinds_.contains(name) ? name : "of other kinds";
    auto const [place, isNew] = kinds_.try_emplace(shown, static_cast<std::uint32_t>(tables_.kinds.size()));
    if (isNew) tables_.kinds.push_back(shown);
    return place->second;
}

}

Drawing read(ORN::RawReader& raw, ReadingOptions const& options, Limits const& limits) {
    Reader reader{raw, options, limits};
    return reader.read();
}

}
