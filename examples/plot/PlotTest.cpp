// The program from end to end: the table beside values from elsewhere, the pictures, and what can be wrong.
#include "plot/Options.h"

#include "tests/support/Cases.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include "orn/colour/DIBitmap.h"
#include "orn/text/Encoding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status;
    std::string out, error;
};

/// Each test has a folder of its own, the current one while it runs.
class Plot : public testing::Test {
protected:
    Plot() { fs::current_path(folder_.path()); }
    ~Plot() override { fs::current_path(before_); }

    /// The program's output goes to another folder: what it leaves in this one is looked at.
    Outcome run(std::vector<std::string> const& arguments) const {
        ChildProcess program{"orn-plot", arguments, {}, streams_.path() / "out", streams_.path() / "error"};
        int const status = program.wait(std::chrono::seconds{300}).value_or(-1);
        return {status, streams_.get("out"), streams_.get("error")};
    }
    Outcome draw(std::string const& bytes, std::vector<std::string> const& arguments) const {
        folder_.put(arguments[arguments.size() - 2], bytes);
        return run(arguments);
    }

    std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> files;
        for (fs::directory_entry const& entry : fs::directory_iterator{folder_.path()}) {
            std::string const name = entry.path().filename().string();
            files[name] = entry.is_directory() ? "a folder" : folder_.get(name);
        }
        return files;
    }

    /// One line that says what is wrong, and not a file is touched.
    void expectFailure(std::vector<std::string> const& arguments, std::string const& message, int status = 1) const {
        auto const before = files();
        Outcome const outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << message;
        EXPECT_EQ(outcome.out, "") << message;
        EXPECT_EQ(outcome.error, message + "\n");
        EXPECT_EQ(files(), before) << message;
    }

    fs::path const before_ = fs::current_path();
    TemporaryFolder const folder_, streams_;
};

using Rows = std::vector<std::vector<std::string>>;

Rows rowsOf(std::string const& table) {
    Rows rows;
    std::istringstream lines{table};
    for (std::string line; std::getline(lines, line);) {
        std::istringstream cells{line};
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, ',');) rows.back().push_back(cell);
    }
    return rows;
}

/// Texts must be equal, numbers nearly so: the systems' mathematics differ in the last place.
void expectTable(std::string const& table, std::string const& expected) {
    Rows const rows = rowsOf(table), wanted = rowsOf(expected);
    ASSERT_EQ(rows.size(), wanted.size()) << table;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        ASSERT_EQ(rows[r].size(), wanted[r].size()) << table;
        for (std::size_t c = 0; c < rows[r].size(); ++c) {
            double const value = std::strtod(rows[r][c].c_str(), nullptr);
            double const right = std::strtod(wanted[r][c].c_str(), nullptr);
            bool const near = std::fabs(value - right) <= 1e-14 * std::max(1.0, std::fabs(right));
            EXPECT_TRUE(r == 0 || c < 3 ? rows[r][c] == wanted[r][c] : near) << rows[r][0] << ' ' << rows[0][c];
        }
    }
}

std::string const columns = "layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n";

// Lengths and areas with 30 digits elsewhere: a semicircle over 2, a quarter circle of radius 3 (bulge tan 22.5 degrees),
// three quarters of a circle of radius 1 (bulge -tan 67.5 degrees, from (0, 1) to (1, 0)).
std::wstring const rows =
    L"note,colour,bulge,y2,x2,layer,y1,x1,y1\n"
    L",#ff0000,1,0,2,\u00FCberall,0,0\n"
    L"\"a, b\",,0.41421356237309503,3,0,\u00FCberall,0,3\n"
    L"\n"
    L" x , #00Ff80 , -2.4142135623730949 , 0 , 1 , \"two \"\"2\" , 1 , 0 \n"
    L"y,,,7,5,,3,2\n"
    L"z,,0,-1e1,1.5D1,\"two \"\"2\",-10,+.5e1";
std::string const table = columns +
                          "\xC3\xBC"
                          "berall,2,2,7.8539816339744830961,4.1393797973719314058,0,-1,3,3\n"
                          "\"two \"\"2\",2,1,14.712388980384689858,-2.8561944901923449288,0,-10,15,2\n"
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

TEST_F(Plot, MeasuresDrawingsInEveryEncoding) {
    std::string const name = "Zeichnung \xC3\xA4\xE2\x82\xAC.csv";
    for (std::string const& bytes :
         {"\xEF\xBB\xBF" + utf8(rows), utf16(rows, true), utf16(rows, false), getMBS(rows)}) {
        std::ofstream{fs::path{std::u8string{name.begin(), name.end()}}, std::ios::binary} << bytes;
        Outcome const outcome = run({"--size", "60x40", name, "p.png"});
        EXPECT_EQ(outcome.status, 0) << outcome.error;
        EXPECT_EQ(outcome.error, "orn-plot: " + name + ": columns that are ignored: 'note'\norn-plot: " + name +
                                     ": columns that stand there twice, of which the first counts: 'y1'\n");
        expectTable(outcome.out, table);
    }
}

struct Place {
    int x, y;
};

TEST_F(Plot, PicturesShowTheDrawingWhereItBelongs) {
    struct {
        std::vector<std::string> options;
        Place red, blue, green, paper;
    } const views[] = {
        {{}, {16, 200}, {200, 384}, {384, 200}, {200, 16}},
        {{"--mirror"}, {384, 200}, {200, 384}, {16, 200}, {200, 16}},
        {{"--rotate", "90"}, {200, 384}, {384, 200}, {200, 16}, {16, 200}},
        {{"--rotate", "-90", "--mirror"}, {200, 384}, {16, 200}, {200, 16}, {384, 200}},
        {{"--scale", "1,-0.5"}, {16, 200}, {200, 108}, {384, 200}, {200, 292}},
    };
    for (auto const& view : views) {
        SCOPED_TRACE(view.options.empty() ? "" : view.options[0]);
        std::vector<std::string> arguments = view.options;
        arguments.insert(arguments.end(), {"--size", "400x400", "corner.csv", "p.BMP"});
        ASSERT_EQ(
            draw("x1,y1,x2,y2,colour\r\n0,0,0,10,#C00000\r\n0,0,10,0,#0000C0\r\n10,0,10,10,#008000\r\n", arguments)
                .status,
            0);
        DIBitmap const picture = DIBitmap::createFromFile(L"p.BMP");
        ASSERT_EQ(picture.width() * 1000 + picture.height(), 400400u);
        auto const ink = [&](Place const& place) {
            unsigned char const* const p = picture.row(static_cast<unsigned int>(place.y)) + 4 * place.x;
            int const least = std::min({p[0], p[1], p[2]});
            return least == 255                  ? "none"
                   : least > 160                 ? "pale"
                   : p[2] > std::max(p[0], p[1]) ? "red"
                   : p[1] > p[0]                 ? "green"
                                                 : "blue";
        };
        EXPECT_STREQ(ink(view.red), "red");
        EXPECT_STREQ(ink(view.blue), "blue");
        EXPECT_STREQ(ink(view.green), "green");
        EXPECT_STREQ(ink(view.paper), "none");
        EXPECT_STREQ(ink({0, 0}), "none");
    }
    EXPECT_EQ(files().size(), 2u);
}

TEST_F(Plot, DrawsAndMeasuresTheLayersThatAreAskedFor) {
    std::string const drawing =
        "0\nSECTION\n2\nTABLES\n0\nLAYER\n2\nb,*\n62\n-1\n70\n0\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
        "0\nLINE\n8\na\n10\n0\n20\n0\n11\n3\n21\n4\n0\nLINE\n8\nb,*\n10\n0\n20\n0\n11\n0\n21\n2\n"
        "0\nTEXT\n8\na\n0\nENDSEC\n0\nEOF\n";
    std::string const a = "1,0,5,0,0,0,3,4\n", b = "1,0,2,0,0,0,0,2\n";
    Outcome const shown = draw(drawing, {"--size=50x50", "d.dxf", "p.svg"});
    EXPECT_EQ(shown.out, columns + "a," + a + "*," + a);
    EXPECT_EQ(shown.error, "orn-plot: d.dxf: not drawn: 1 TEXT\n");
    Outcome const named = run({"--quiet", "--layers=\"b,*\"", "--table=t.csv", "--background=black", "d.dxf", "p.bmp"});
    EXPECT_EQ(named.out + named.error, "");
    EXPECT_EQ(folder_.get("t.csv"), columns + "\"b,*\"," + b + "*," + b);
    EXPECT_EQ(DIBitmap::createFromFile(L"p.bmp").row(0)[0], 0u);

    // The last row stands for the whole, and no layer has its name.
    std::string const stars = draw("x1,y1,x2,y2,layer\n0,0,0,2,*\n", {"--size=50x50", "d.csv", "p.png"}).out;
    EXPECT_EQ(stars, columns + "*," + b + "**," + b);
    // A file or another program gets a name as it is.
    std::string const bell = draw("x1,y1,x2,y2,layer\n0,0,0,2,\x1B[m\x7F\n", {"--size=50x50", "d.csv", "p.png"}).out;
    EXPECT_EQ(bell, columns + "\x1B[m\x7F," + b + "*," + b);
}

TEST(PlotOptions, SayWhatIsWrongOnTheCommandLine) {
    for (auto const& [given, said] : Cases{"examples/plot/PlotTest.txt"}.of<2>("refused")) {
        std::vector<std::wstring> arguments;
        std::wistringstream words{given};
        for (std::wstring word; std::getline(words, word, L' ');) arguments.push_back(word);
        EXPECT_EQ(thrown([&] { plot::parseOptions(arguments); }), L"OrnError: orn-plot: " + said + L" (see --help)");
    }
    for (wchar_t const* size : {L"30000x1666", L"1666x30000", L"10000x5000", L"1x1"}) {
        EXPECT_EQ(thrown([&] { plot::parseOptions({L"--size", size, L"d.csv", L"p.png"}); }), L"nothing") << size;
    }
}

TEST_F(Plot, HelpAndVersionGoToStandardOutput) {
    for (char const* option : {"--help", "-h", "--version", "-V"}) {
        Outcome const outcome = run({"--mirror", option, "--nonsense"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.error, "");
        EXPECT_NE(outcome.out.find("orn-plot"), std::string::npos);
    }
}

TEST_F(Plot, SaysInOneLineWhatIsWrong) {
    folder_.put("old.png", "the old picture");
    folder_.put("d.csv", "\xEF\xBB\xBFx1,y1,x2,y2\n0,0,1,\"\x1B[2J\n\x7F\xC2\x9B\"\n");
    expectFailure({"d.csv", "old.png"}, "d.csv:2: y2: ' [2J   ' is not a number");
    expectFailure({"d.csv", "old.png", "--colour"}, "orn-plot: unknown option --colour (see --help)", 2);
}

TEST_F(Plot, SaysWhichFilesAreNotThereOrCannotBeWritten) {
    folder_.put("old.png", "the old picture");
    folder_.put("d.csv", "x1,y1,x2,y2\n0,0,1e10,1\n");
    fs::create_directory("folder.png");
    expectFailure({"none.csv", "old.png"}, "The file \"none.csv\" cannot be opened: No such file or directory.");
    expectFailure({"folder.png", "old.png"}, "folder.png: this is a folder");
    expectFailure({"--layers=1", "d.csv", "old.png"}, "d.csv: there is no layer '1'");
    expectFailure({"--scale", "1e300,1", "d.csv", "old.png"},
                  "d.csv: the drawing is too large, or too small, to be fitted into a page");
    expectFailure({"--size=50x50", "d.csv", "none/p.png"}, "none/p.png: the folder 'none' is not there");
    expectFailure({"--size=50x50", "d.csv", "folder.png"}, "folder.png: this is a folder");
    EXPECT_EQ(run({"--size=50x50", "d.csv", "old.png"}).status, 0);
    // A file whose name means a stream elsewhere; and the longest name that may be.
    EXPECT_EQ(draw("x1,y1,x2,y2\n0,0,1,1\n", {"--size=50x50", "./-", "p.png"}).error, "");
    std::string const longest = std::string(250, 'p') + ".png";
    bool const isAllowed = std::ofstream{longest}.is_open();
    EXPECT_TRUE(!isAllowed || run({"--size=50x50", "d.csv", longest}).status == 0);
    EXPECT_NE(folder_.get("old.png"), "the old picture");
}

}
