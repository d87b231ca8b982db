// Drawings that are right: the table beside values from elsewhere, and the pictures.
#include "plot/TestSupport.h"

#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

using namespace plottest;

std::vector<std::vector<std::string>> rowsOf(std::string const& table) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines{table};
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string>& row = rows.emplace_back();
        std::istringstream cells{line};
        for (std::string cell; std::getline(cells, cell, ',');) row.push_back(cell);
    }
    return rows;
}

/// Texts must be equal, numbers nearly so: the systems' mathematics differ in the last place.
void expectTable(std::string const& table, std::string const& expected) {
    auto const rows = rowsOf(table), wanted = rowsOf(expected);
    ASSERT_EQ(rows.size(), wanted.size()) << table;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        ASSERT_EQ(rows[r].size(), wanted[r].size()) << table;
        for (std::size_t c = 0; c < rows[r].size(); ++c) {
            if (r == 0 || c < 3) {
                EXPECT_EQ(rows[r][c], wanted[r][c]);
            } else {
                double const value = std::strtod(rows[r][c].c_str(), nullptr);
                double const right = std::strtod(wanted[r][c].c_str(), nullptr);
                EXPECT_NEAR(value, right, 1e-14 * std::max(1.0, std::fabs(right))) << rows[r][0] << ' ' << rows[0][c];
            }
        }
    }
}

// Lengths and areas with 30 digits elsewhere: a semicircle over 2, a quarter circle of radius 3 (bulge tan 22.5 degrees),
// three quarters of a circle of radius 1 (bulge -tan 67.5 degrees, from (0, 1) to (1, 0)).
std::wstring const rows =
    L"note,colour,bulge,y2,x2,layer,y1,x1\n"
    L",#ff0000,1,0,2,\u00FCberall,0,0\n"
    L"\"a, b\",,0.41421356237309503,3,0,\u00FCberall,0,3\n"
    L"\n"
    L" x , #00Ff80 , -2.4142135623730949 , 0 , 1 , two , 1 , 0 \n"
    L"y,,,7,5,,3,2\n"
    L"z,,0,-1e1,1.5D1,two,-10,+.5e1";
std::string const table =
    "layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n"
    "\xC3\xBC"
    "berall,2,2,7.8539816339744830961,4.1393797973719314058,0,-1,3,3\n"
    "two,2,1,14.712388980384689858,-2.8561944901923449288,0,-10,15,2\n"
    "0,1,0,5,0,2,3,5,7\n"
    "*,5,3,27.566370614359172954,1.2831853071795864769,0,-10,15,7\n";

std::string utf16(std::wstring const& text, bool littleEndian) {
    std::string bytes;
    for (wchar_t const unit : L'\xFEFF' + text) {
        char const low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += littleEndian ? std::string{low, high} : std::string{high, low};
    }
    return bytes;
}

TEST(Plot, MeasuresDrawingsInEveryEncoding) {
    Folder const folder;
    std::string const encoded[] = {"\xEF\xBB\xBF" + utf8(rows), utf16(rows, true), utf16(rows, false), getMBS(rows)};
    for (std::string const& bytes : encoded) {
        std::wstring const name = L"Zeichnung \u00E4\u20AC.csv";
        writeFile(std::filesystem::path{std::u8string{u8"Zeichnung \u00E4\u20AC.csv"}}, bytes);
        Outcome const outcome = runPlot({L"--size", L"60x40", name, L"p.png"});
        EXPECT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_EQ(outcome.error, "orn-plot: " + utf8(name) + ": columns that are ignored: 'note'\n");
        expectTable(outcome.out, table);
    }
}

TEST(Plot, NumbersOfTheTableAreTheNumbersOfTheFile) {
    Folder const folder;
    std::mt19937_64 random{3};
    std::string drawing = "layer,x1,y1,x2,y2\n";
    std::vector<double> values;
    for (int i = 0; i < 200; ++i) {
        values.push_back(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 60) - 90));
        char row[64];
        std::snprintf(row, sizeof row, "l%d,%.17g,0,1e20,1\n", i, values.back());
        drawing += row;
    }
    writeFile("numbers.csv", drawing);
    auto const printed = rowsOf(runPlot({L"--size", L"20x20", L"numbers.csv", L"p.png"}).out);
    ASSERT_EQ(printed.size(), 202u);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(std::strtod(printed[i + 1][5].c_str(), nullptr), values[i]);
}

TEST(Plot, PicturesAgreeAndShowTheDrawingWhereItBelongs) {
    Folder const folder;
    writeFile("corner.csv", "x1,y1,x2,y2,colour\r\n0,0,0,10,#C00000\r\n0,0,10,0,#0000C0\r\n10,0,10,10,#008000\r\n");
    struct {
        std::vector<std::wstring> options;
        int red[2], blue[2], green[2], paper[2];
    } const views[] = {
        {{}, {16, 200}, {200, 384}, {384, 200}, {200, 16}},
        {{L"--mirror"}, {384, 200}, {200, 384}, {16, 200}, {200, 16}},
        {{L"--rotate", L"90"}, {200, 384}, {384, 200}, {200, 16}, {16, 200}},
        {{L"--rotate", L"-90", L"--mirror"}, {200, 384}, {16, 200}, {200, 16}, {384, 200}},
        {{L"--scale", L"1,-0.5"}, {16, 200}, {200, 108}, {384, 200}, {200, 292}},
    };
    for (auto const& view : views) {
        std::vector<std::wstring> arguments = view.options;
        arguments.insert(arguments.end(), {L"--size", L"400x400", L"corner.csv", L"p.BMP"});
        ASSERT_EQ(runPlot(arguments).status, 0);
        arguments.back() = L"p.png";
        ASSERT_EQ(runPlot(arguments).status, 0);

        Image const bmp = readBmp("p.BMP");
        EXPECT_TRUE(bmp == readPng("p.png"));
        ASSERT_EQ(bmp.width, 400);
        ASSERT_EQ(bmp.height, 400);
        auto const channel = [&](int const(&place)[2], int shift) {
            return bmp.at(place[0], place[1]) >> shift & 0xFF;
        };
        auto const inked = [&](int const(&place)[2], int shift) {
            for (int other : {0, 8, 16}) {
                if (other != shift && channel(place, other) > 160) return false;
            }
            return channel(place, shift) > 120;
        };
        SCOPED_TRACE(view.options.empty() ? "" : utf8(view.options[0]));
        EXPECT_TRUE(inked(view.red, 16)) << std::hex << bmp.at(view.red[0], view.red[1]);
        EXPECT_TRUE(inked(view.blue, 0)) << std::hex << bmp.at(view.blue[0], view.blue[1]);
        EXPECT_TRUE(inked(view.green, 8)) << std::hex << bmp.at(view.green[0], view.green[1]);
        EXPECT_EQ(bmp.at(view.paper[0], view.paper[1]), 0xFFFFFFu);
        EXPECT_EQ(bmp.at(0, 0), 0xFFFFFFu);
    }
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"corner.csv", "p.BMP", "p.png"}));
}

TEST(Plot, HelpAndVersionGoToStandardOutput) {
    for (wchar_t const* option : {L"--help", L"-h", L"--version", L"-V"}) {
        Outcome const outcome = runPlot({L"--mirror", option, L"--nonsense"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.error, "");
        EXPECT_NE(outcome.out.find("orn-plot"), std::string::npos);
    }
}

TEST(Plot, DrawsAndMeasuresTheLayersThatAreAskedFor) {
    Folder const folder;
    writeFile("d.dxf",
              "0\nSECTION\n2\nTABLES\n0\nLAYER\n2\nb\n62\n-1\n70\n0\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
              "0\nLINE\n8\na\n10\n0\n20\n0\n11\n3\n21\n4\n0\nLINE\n8\nb\n10\n0\n20\n0\n11\n0\n21\n2\n"
              "0\nTEXT\n8\na\n0\nENDSEC\n0\nEOF\n");
    std::string const header = "layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n";
    std::string const a = "1,0,5,0,0,0,3,4\n", b = "1,0,2,0,0,0,0,2\n";
    Outcome const shown = runPlot({L"--size=50x50", L"d.dxf", L"p.svg"});
    EXPECT_EQ(shown.out, header + "a," + a + "*," + a);
    EXPECT_EQ(shown.error, "orn-plot: d.dxf: not drawn: 1 TEXT\n");
    Outcome const named =
        runPlot({L"--quiet", L"--layers=b", L"--table=t.csv", L"--background=black", L"d.dxf", L"p.bmp"});
    EXPECT_EQ(named.out + named.error, "");
    EXPECT_EQ(readFile("t.csv"), header + "b," + b + "*," + b);
    EXPECT_EQ(readBmp("p.bmp").at(0, 0), 0u);
}

}
