// What only files made for the purpose can show: what is refused, what names mean, and colours. Whether drawings are
// measured right is compared with another reader (plot/test-dxf).
#include "drawing/Reading.h"
#include "drawing/dxf/Colours.h"
#include "drawing/dxf/Reader.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

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

class Bytes final : public ORN::RawReader {
public:
    explicit Bytes(std::string bytes) : bytes_{std::move(bytes)} {}
    std::wstring name() const override { return L"d.dxf"; }
    std::int64_t read(void* buffer, std::uint64_t count) override {
        std::size_t const size = std::min<std::size_t>({static_cast<std::size_t>(count), bytes_.size() - at_, 7});
        std::memcpy(buffer, bytes_.data() + at_, size);
        at_ += size;
        return static_cast<std::int64_t>(size);
    }

private:
    std::string bytes_;
    std::size_t at_ = 0;
};

struct Outcome {
    Drawing drawing;
    std::wstring remarks;
};

Outcome read(std::string const& bytes, dxf::Limits const& limits = {}) {
    Outcome outcome;
    drawing::ReadingOptions options;
    options.remark = [&](std::wstring const& what) { outcome.remarks += what + L'\n'; };
    Bytes raw{bytes};
    outcome.drawing = dxf::read(raw, options, limits);
    return outcome;
}

TEST(Dxf, SaysWhereAFileIsWrong) {
    std::string const insertion = "0|INSERT|2|A|10|0|20|0";
    struct {
        std::string bytes;
        std::wstring message;
    } const cases[] = {
        {"", L"0: the file ends before the group 0 EOF"},
        {lines("0|SECTION|2"), L"3: the value of the last group is missing"},
        {lines("0|SECTION|2|ENTITIES|") + lines(aLine), L"5: '' is not a group code of DXF"},
        {lines("0|SECTION|2|ENTITIES|" + aLine + "|0|EOF"), L"18: the file ends before ENDSEC"},
        {lines("0|SECTION|2|OBJECTS|0|EOF"), L"6: the file ends before ENDSEC"},
        {lines("0|SECTION|2|ENTITIES|" + aLine), L"16: the file ends before the group 0 EOF"},
        {lines("zero|SECTION"), L"1: 'zero' is not a group code of DXF"},
        {lines("99999999999|SECTION"), L"1: '99999999999' is not a group code of DXF"},
        {"Some Binary DXF\r\n\x1a", L"1: a binary DXF file cannot be read, only ASCII DXF"},
        {std::string{"\xFF\xFE\x30\x00", 4}, L"1: a DXF file is not UTF-16"},
        {model("0|LINE|10|1|20|2x"), L"10: group 20: '2x' is not a number"},
        {model("0|LINE|10|1|20|1e999"), L"10: group 20: '1e999' is not a number"},
        {model("0|LINE|62|red"), L"8: group 62: 'red' is not a whole number"},
        {model("0|LINE|10|1|20|2|11|3"), L"6: LINE lacks its group 21"},
        {model("0|CIRCLE|10|1|20|2"), L"6: CIRCLE lacks its group 40"},
        {model("0|CIRCLE|10|1|20|2|40|3|210|0|220|0|230|0"), L"6: the extrusion direction has no length"},
        {model("0|CIRCLE|10|1|20|2|40|1e200"), L"6: the entity is too large to be measured"},
        {model("0|SPLINE|71|3|10|1|20|2|40|0"), L"6: the knots of a SPLINE do not fit its degree and its points"},
        {model("0|SPLINE|71|99|10|1|20|2|40|0"), L"6: a SPLINE of degree 99 cannot be drawn"},
        {model("0|SPLINE|71|1|10|1|20|2|10|1|20|3|40|0|40|0|40|1|40|1|41|0|41|1"),
         L"6: the weights of a SPLINE do not fit its points"},
        {model("0|INSERT|10|1|20|2"), L"6: INSERT lacks its group 2"},
        {blocks("0|BLOCK|2|A|" + aLine, insertion), L"22: a block ends without ENDBLK"},
        {blocks("0|BLOCK|2|A|" + insertion + "|0|ENDBLK", insertion), L"26: the block 'A' inserts itself"},
        {blocks("0|BLOCK|2|A|0|INSERT|2|B|10|0|20|0|0|ENDBLK|0|BLOCK|2|b|" + insertion + "|0|ENDBLK", insertion),
         L"40: the block 'A' inserts itself"},
    };
    for (auto const& c : cases) {
        std::wstring const message = thrown([&] { read(c.bytes); });
        EXPECT_EQ(message, L"OrnError: d.dxf:" + c.message) << c.bytes;
    }
}

/// Whatever a file of few bytes asks for ends soon.
TEST(Dxf, BoundsWhatAFileMayAskFor) {
    std::string chain = "0|BLOCK|2|0|0|ENDBLK", ending = "0|INSERT|2|N|10|0|20|0";
    for (int i = 1; i <= 70; ++i) {
        chain += "|0|BLOCK|2|" + std::to_string(i) + "|0|INSERT|2|" + std::to_string(i - 1) +
                 "|70|30000|71|30000|10|0|20|0|0|ENDBLK";
    }
    auto const inserted = [&](std::string const& name) { return blocks(chain, "0|INSERT|2|" + name + "|10|0|20|0"); };
    EXPECT_NE(thrown([&] { read(inserted("1"), {.steps = 100000}); }).find(L"more than 100000 entities"),
              std::wstring::npos);
    EXPECT_NE(thrown([&] { read(inserted("70")); }).find(L"more than 64 deep"), std::wstring::npos);

    dxf::Limits const few{.pieces = 3, .steps = 100, .numbers = 40};
    EXPECT_EQ(read(model(aLine + "|" + aLine + "|" + aLine), few).drawing.entities().size(), 3u);
    EXPECT_NE(thrown([&] {
                  read(model(aLine + "|" + aLine + "|" + aLine + "|" + aLine), few);
              }).find(L"more than 3 lines and arcs"),
              std::wstring::npos);
    std::string vertices = "0|LWPOLYLINE|70|1";
    for (int i = 0; i < 20; ++i) vertices += "|10|1|20|2";
    EXPECT_NE(thrown([&] { read(model(vertices), few); }).find(L"too many points"), std::wstring::npos);
    std::string const block = "0|BLOCK|2|A|" + aLine + "|" + aLine + "|" + aLine + "|" + aLine + "|0|ENDBLK";
    EXPECT_NE(thrown([&] { read(blocks(block, aLine), few); }).find(L"more than can be kept"), std::wstring::npos);
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

TEST(Dxf, FilesAreToldApartByNameOrBeginning) {
    TemporaryFolder const folder;
    std::string const bytes = lines("999|a comment") + model(aLine);
    for (char const* name : {"named.DXF", "unnamed.csv"}) {
        EXPECT_EQ(drawing::readDrawing(folder.put(name, bytes)).total().length, 5) << name;
    }
    std::wstring const empty = folder.put("empty.dxf", "x1,y1,x2,y2\n");
    EXPECT_EQ(thrown([&] { drawing::readDrawing(empty); }),
              L"OrnError: " + empty + L":1: 'x1,y1,x2,y2' is not a group code of DXF");
}

}
