// What only files made for the purpose can show: what is refused, what names mean, and colours. Whether drawings are
// measured right is compared with another reader (plot/test-dxf).
#include "drawing/Reading.h"
#include "drawing/dxf/Colours.h"
#include "drawing/dxf/Reader.h"

#include "tests/support/Cases.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include "orn/text/Printf.h"

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

/// A column of a case, which also has | between lines.
std::string bytesOf(std::wstring const& column) {
    std::string bytes{column.begin(), column.end()};
    std::replace(bytes.begin(), bytes.end(), '|', '\n');
    return bytes;
}

constexpr Cases cases{"examples/drawing/ReadingTest.txt"};

std::string const aLine = "0|LINE|8|0|10|1|20|2|11|4|21|6";

std::string model(std::string const& entities) { return lines("0|SECTION|2|ENTITIES|" + entities + "|0|ENDSEC|0|EOF"); }
std::string blocks(std::string const& content, std::string const& entities) {
    return lines("0|SECTION|2|BLOCKS|" + content + "|0|ENDSEC") + model(entities);
}

struct Outcome {
    Drawing drawing;
    std::wstring remarks;
};

Outcome read(std::string const& bytes, dxf::Limits const& limits = {}) {
    Outcome outcome;
    drawing::ReadingOptions options;
    options.remark = [&](std::wstring const& what) { outcome.remarks += what + L';'; };
    MemoryReader raw{bytes, 7};
    outcome.drawing = dxf::read(raw, options, limits);
    return outcome;
}

TEST(Reading, SaysWhereAFileIsWrong) {
    TemporaryFolder const folder;
    for (auto const& [said, content] : cases.of<2>("refused")) {
        std::size_t const nameEnds = said.find(L':');
        std::wstring const file = folder.put(bytesOf(said.substr(0, nameEnds)), bytesOf(content));
        EXPECT_EQ(thrown([&] { drawing::readDrawing(file); }), L"OrnError: " + file + said.substr(nameEnds));
    }
}

TEST(Reading, RemarksOnManyColumnsNameFew) {
    TemporaryFolder const folder;
    std::string header = "x1,y1,x2,y2";
    for (int i = 0; i < 25; ++i) header += ",c" + std::to_string(i);
    drawing::ReadingOptions options;
    std::wstring said;
    options.remark = [&](std::wstring const& what) { said += what; };
    drawing::readDrawing(folder.put("d.csv", header + "\n0,0,1,1\n"), options);
    EXPECT_EQ(said.substr(said.find(L"'c18'")), L"'c18', 'c19' and 5 more");
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
    std::string const block = times(1, aLine) + "|0|ENDBLK";
    expectRefusal(blocks("0|BLOCK|2|A" + block + "|0|BLOCK|2|B" + block + "|0|BLOCK|2|C" + block, aLine), few,
                  L"can be kept");
    EXPECT_EQ(read(blocks(times(9, "0|BLOCK|2|A" + block).substr(1), aLine), few).remarks, L"");
    expectRefusal(blocks("0|BLOCK|2|A" + times(11, "0|X") + "|0|ENDBLK", aLine), few, L"can be kept");
    expectRefusal(blocks("0|BLOCK|2|A|0|ENDBLK|0|BLOCK|2|B|0|ENDBLK", aLine), {.names = 2}, L"more than 2 names");
    std::string const flat = "0|SPLINE|71|1" + times(60, "10|1|20|2") + times(62, "40|0");
    expectRefusal(model(flat + "|" + flat), {.steps = 100}, L"more than 100 entities and points");
}

TEST(Dxf, NamesAreTextInTheFilesOwnCodePage) {
    for (auto const& [header, name, text] : cases.of<3>("names")) {
        Outcome const outcome = read(lines("0|SECTION|2|HEADER") + bytesOf(header) + lines("0|ENDSEC") +
                                     model("0|LINE|8|" + bytesOf(name) + "|10|1|20|2|11|4|21|6"));
        EXPECT_EQ(outcome.drawing.layers().at(0).name + (outcome.remarks.empty() ? L"" : L" ?"), text);
    }
}

TEST(Dxf, ColoursAndLayersComeFromWhereTheFileSays) {
    std::string styles;
    for (auto const& [groups] : cases.of<1>("layers and blocks")) styles += bytesOf(groups);
    for (auto const& [entity, drawn] : cases.of<2>("entities")) {
        Outcome const outcome = read(styles + model(bytesOf(entity)));
        std::wstring seen;
        for (auto const& e : outcome.drawing.entities()) {
            auto const& layer = outcome.drawing.layers()[e.layer];
            seen += layer.name + (layer.hidden ? L"!" : L"") + stringPrintf(L" %06X;", e.rgb);
        }
        EXPECT_EQ(seen + outcome.remarks, drawn);
    }

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
