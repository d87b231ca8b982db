// What only files made for the purpose can show: what is refused, what names mean, and colours. Whether drawings are
// measured right is compared with another reader (plot/test-dxf).
#include "drawing/Reading.h"
#include "drawing/dxf/Colours.h"
#include "drawing/dxf/Reader.h"

#include "tests/support/Cases.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using drawing::Drawing;
namespace dxf = drawing::dxf;

/// Groups as a test writes them, on one line and with | between: "0|LINE|8|walls".
std::string lines(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\n');
    return text + "\n";
}

std::string section(std::string const& name, std::string const& content) {
    return lines("0|SECTION|2|" + name) + (content.empty() ? "" : lines(content)) + lines("0|ENDSEC");
}

std::string const end = lines("0|EOF");
std::string const aLine = "0|LINE|8|0|10|1|20|2|11|4|21|6";

std::string model(std::string const& entities) { return section("ENTITIES", entities) + end; }
std::string blocks(std::string const& content, std::string const& entities) {
    return section("BLOCKS", content) + model(entities);
}

struct Outcome {
    Drawing drawing;
    std::wstring remarks;
};

Outcome read(std::string const& bytes, dxf::Limits const& limits = {}) {
    Outcome outcome;
    drawing::ReadingOptions options;
    options.remark = [&](std::wstring const& what) { outcome.remarks += what + L'\n'; };
    MemoryReader raw{bytes, 7};
    outcome.drawing = dxf::read(raw, options, limits);
    return outcome;
}

TEST(Reading, SaysWhereAFileIsWrong) {
    TemporaryFolder const folder;
    for (auto const& [said, content] : Cases{"examples/drawing/ReadingTest.txt"}.of<2>("refused")) {
        std::string bytes{content.begin(), content.end()};
        std::replace(bytes.begin(), bytes.end(), '|', '\n');
        std::size_t const nameEnds = said.find(L':');
        std::wstring const file =
            folder.put({said.begin(), said.begin() + static_cast<std::ptrdiff_t>(nameEnds)}, bytes);
        EXPECT_EQ(thrown([&] { drawing::readDrawing(file); }), L"OrnError: " + file + said.substr(nameEnds));
    }
}

/// Whatever a file of few bytes asks for ends soon.
TEST(Dxf, BoundsWhatAFileMayAskFor) {
    auto const expectRefusal = [](std::string const& bytes, dxf::Limits const& limits, std::wstring const& what) {
        EXPECT_NE(thrown([&] { read(bytes, limits); }).find(what), std::wstring::npos) << bytes;
    };
    auto const times = [](int count, std::string const& groups) {
        std::string all;
        for (int i = 0; i < count; ++i) all += "|" + groups;
        return all;
    };
    std::string chain = "0|BLOCK|2|0|0|ENDBLK";
    for (int i = 1; i <= 70; ++i) {
        chain += "|0|BLOCK|2|" + std::to_string(i) + "|0|INSERT|2|" + std::to_string(i - 1) +
                 "|70|30000|71|30000|10|0|20|0|0|ENDBLK";
    }
    expectRefusal(blocks(chain, "0|INSERT|2|1|10|0|20|0"), {.steps = 100000}, L"more than 100000 entities");
    expectRefusal(blocks(chain, "0|INSERT|2|70|10|0|20|0"), {}, L"more than 64 deep");

    dxf::Limits const few{.pieces = 3, .steps = 100, .numbers = 40};
    EXPECT_EQ(read(model(times(3, aLine).substr(1)), few).drawing.entities().size(), 3u);
    expectRefusal(model(times(4, aLine).substr(1)), few, L"more than 3 lines and arcs");
    expectRefusal(model("0|LWPOLYLINE|70|1" + times(20, "10|1|20|2")), few, L"too many points");
    expectRefusal(blocks("0|BLOCK|2|A" + times(4, aLine) + "|0|ENDBLK", aLine), few, L"more than can be kept");
}

TEST(Dxf, NamesAreTextInTheFilesOwnCodePage) {
    auto const layerOf = [](std::string const& header, std::string const& name) {
        Outcome const outcome = read(section("HEADER", header) + model("0|LINE|8|" + name + "|10|1|20|2|11|4|21|6"));
        return outcome.drawing.layers().at(0).name + (outcome.remarks.empty() ? L"" : L" ?");
    };
    EXPECT_EQ(layerOf("", "caf\xE9"), L"caf\u00E9");
    EXPECT_EQ(layerOf("9|$ACADVER|1|AC1015|9|$DWGCODEPAGE|3|ANSI_1251", "\xC4\xEE\xEC"), L"\u0414\u043E\u043C");
    EXPECT_EQ(layerOf("9|$DWGCODEPAGE|3|ansi_932", "\x95\x5C"), L"\u8868");
    EXPECT_EQ(layerOf("9|$DWGCODEPAGE|3|DOS850|9|$ACADVER|1|AC1009", "\x84"), L"\u00E4");
    EXPECT_EQ(layerOf("9|$ACADVER|1|AC1021|9|$DWGCODEPAGE|3|ANSI_1252", "caf\xC3\xA9"), L"caf\u00E9");
    EXPECT_EQ(layerOf("", "W\\U+00E4nde \\U+12"), L"W\u00E4nde \\U+12");
    EXPECT_EQ(layerOf("9|$DWGCODEPAGE|3|none", "\xE9"), L"\u00E9 ?");
}

TEST(Dxf, ColoursAndLayersComeFromWhereTheFileSays) {
    std::string const tables =
        "0|TABLE|2|LAYER|0|LAYER|2|Red|70|0|62|1|0|LAYER|2|Off|70|0|62|-3|0|LAYER|2|ice|70|1|62|4|"
        "0|LAYER|2|true|70|0|62|5|420|1193046|0|ENDTAB";
    auto const line = [](std::string const& layer, std::string const& style) {
        return "|0|LINE|8|" + layer + style + "|10|0|20|0|11|1|21|0";
    };
    auto const insert = [](std::string const& block, std::string const& style) {
        return "|0|INSERT|2|" + block + "|10|0|20|0" + style;
    };
    std::string const content = "0|BLOCK|2|IN" + line("0", "") + line("0", "|62|0") + line("red", "") +
                                line("0", "|62|6") + "|0|ENDBLK|0|BLOCK|2|OUT" + insert("IN", "|8|0|62|0") +
                                "|0|ENDBLK";
    std::string const entities = line("RED", "").substr(1) + line("0", "") + line("Off", "|62|2") + line("true", "") +
                                 line("0", "|420|255") + line("0", "|62|0") + insert("out", "|8|true|62|3") +
                                 insert("in", "|8|ice") + line("0", "|60|1") + line("0", "|67|1");
    Outcome const outcome = read(section("TABLES", tables) + blocks(content, entities));
    std::wstring seen;
    for (auto const& entity : outcome.drawing.entities()) {
        auto const& layer = outcome.drawing.layers()[entity.layer];
        wchar_t text[64];
        std::swprintf(text, 64, L" %06X", entity.rgb);
        seen += layer.name + (layer.hidden ? L"!" : L"") + text + L"\n";
    }
    EXPECT_EQ(seen,
              L"Red FF0000\n0 000000\nOff! FFFF00\ntrue 123456\n0 0000FF\n0 000000\n"
              L"true 123456\ntrue 00FF00\nRed FF0000\ntrue FF00FF\n");
    EXPECT_EQ(outcome.remarks, L"not drawn: 1 INSERT (on a frozen layer), 1 invisible, 1 on paper\n");

    // The first ones, and of the others pure and pale ones, bright and dark.
    std::pair<int, unsigned int> const indices[] = {{1, 0xFF0000},   {4, 0x00FFFF},   {7, 0xABCDEF},   {10, 0xFF0000},
                                                    {11, 0xFF7F7F},  {30, 0xFF7F00},  {52, 0xA5A500},  {94, 0x007F00},
                                                    {153, 0x527CA5}, {176, 0x00004C}, {230, 0xFF007F}, {255, 0xFFFFFF}};
    for (auto const& [index, rgb] : indices) EXPECT_EQ(dxf::colourOfIndex(index, 0xABCDEF), rgb) << index;
}

TEST(Reading, FilesAreToldApartByNameOrBeginning) {
    TemporaryFolder const folder;
    for (char const* name : {"named.DXF", "unnamed.csv"}) {
        std::wstring const file = folder.put(name, lines("999|a comment") + model(aLine));
        EXPECT_EQ(drawing::readDrawing(file).total().length, 5) << name;
    }
}

}
