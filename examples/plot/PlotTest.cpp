// The program from end to end: the table beside values from elsewhere, the pictures, and everything that can be wrong.
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

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
    L"note,colour,bulge,y2,x2,layer,y1,x1\n"
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
        EXPECT_EQ(outcome.error, "orn-plot: " + name + ": columns that are ignored: 'note'\n");
        expectTable(outcome.out, table);
    }
}

TEST_F(Plot, NumbersOfTheTableAreTheNumbersOfTheFile) {
    std::mt19937_64 random{3};
    std::string drawing = "layer,x1,y1,x2,y2\n";
    std::vector<double> values;
    for (int i = 0; i < 200; ++i) {
        values.push_back(std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 60) - 90));
        char row[64];
        std::snprintf(row, sizeof row, "l%d,%.17g,0,1e20,1\n", i, values.back());
        drawing += row;
    }
    Rows const printed = rowsOf(draw(drawing, {"--size", "20x20", "numbers.csv", "p.png"}).out);
    ASSERT_EQ(printed.size(), 202u);
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(std::strtod(printed[i + 1][5].c_str(), nullptr), values[i]);
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

TEST_F(Plot, HelpAndVersionGoToStandardOutput) {
    for (char const* option : {"--help", "-h", "--version", "-V"}) {
        Outcome const outcome = run({"--mirror", option, "--nonsense"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.error, "");
        EXPECT_NE(outcome.out.find("orn-plot"), std::string::npos);
    }
}

TEST_F(Plot, SaysWhatIsWrongInADrawing) {
    folder_.put("old.png", "the old picture");
    std::string const header = "x1,y1,x2,y2,bulge,layer,colour\n", good = "0,0,1,1,0,a,#000000\n";
    std::string const utf8Mark = "\xEF\xBB\xBF", noText = "The file holds text that is not valid in its encoding.";
    struct {
        std::string bytes, message;
    } const drawings[] = {
        {"", ":1: the columns x1, y1, x2, y2 are missing"},
        {"x1;y1;x2;y2\n1;2;3;4\n", ":1: the columns x1, y1, x2, y2 are missing in the header 'x1;y1;x2;y2'"},
        {"y1,X1,bulge,x2\n1,2,0,3\n", ":1: the columns x1, y2 are missing in the header 'y1,X1,bulge,x2'"},
        {"x1,y1,x2\n1,2,3\n", ":1: the column y2 is missing in the header 'x1,y1,x2'"},
        {header + "\n,,,\n", ": there is nothing to draw"},
        {header + good + "0,0,1,1,abc\n", ":3: bulge: 'abc' is not a number"},
        {header + good + "\n\r\n0,0,1,1 1,0\n", ":5: y2: '1 1' is not a number"},
        {header + "0,,1,1\n", ":2: y1: '' is not a number"},
        {header + "0,0\n", ":2: x2: '' is not a number"},
        {header + "nan,0,1,1\n", ":2: x1: 'nan' is not a number"},
        {header + "0,0,1e309,1\n", ":2: x2: '1e309' is not a number"},
        {header + "0,0,1,\"\x1B[2J\n\"\n", ":2: y2: ' [2J ' is not a number"},
        {utf8Mark + header + "0,0,1,\x7F\u009B2J\n", ":2: y2: '  2J' is not a number"},
        {header + "0,0,1," + std::string(1000, '7') + "x\n",
         ":2: y2: '" + std::string(40, '7') + "...' is not a number"},
        {header + good + "0,0,1,1,0,a,red\n", ":3: colour: 'red' is not a colour like #C04000"},
        {header + "0,0,1,1,0,a,#12345\n", ":2: colour: '#12345' is not a colour like #C04000"},
        {header + "0,0,1,1,0,a,#12345G\n", ":2: colour: '#12345G' is not a colour like #C04000"},
        {header + "-1e308,0,1e308,0,1\n", ":2: the row is too large to be measured"},
        {header + good + "0,0,0,1,0,\"b\n" + good, ":4: A quoted field is not closed. (The row begins in line 3.)"},
        {utf8Mark + header + good + "0,0,1,1,0,\xF8,\n", ":3: " + noText},
        {utf8Mark + header + good + "0,0,1,1,0,\xE2\x82", ":3: " + noText},
        {std::string{"\xFF\xFE\x00\xDC\x0A\x00", 6}, ":1: " + noText},
    };
    for (auto const& drawing : drawings) {
        folder_.put("d.csv", drawing.bytes);
        expectFailure({"d.csv", "old.png"}, "d.csv" + drawing.message);
    }
}

TEST_F(Plot, SaysWhatIsWrongOnTheCommandLine) {
    folder_.put("old.png", "the old picture");
    folder_.put("d.csv", "x1,y1,x2,y2\n0,0,1,1\n");
    std::string const limits = " pixels cannot be drawn: at most 30000 a side and 50000000 in all";
    struct {
        std::vector<std::string> arguments;
        std::string message;
        bool named = true;
    } const lines[] = {
        {{}, "a drawing and a picture must be named", false},
        {{"d.csv"}, "a picture must be named", false},
        {{"more.png"}, "'old.png' is one name too many"},
        {{"d.csv", "old.jpg"}, "old.jpg: the name of a picture ends in .png, .bmp, .svg or .pdf", false},
        {{"d.csv", ".png"}, ".png: the name of a picture ends in .png, .bmp, .svg or .pdf", false},
        {{"--colour"}, "unknown option --colour"},
        {{"-x"}, "unknown option -x"},
        {{"d.csv", "old.png", "--size"}, "--size: the value is missing", false},
        {{"--size", "100"}, "--size: '100' is not a size like 1200x900"},
        {{"--size", "axb"}, "--size: 'axb' is not a size like 1200x900"},
        {{"--size", "0x9"}, "--size: a page of 0x9" + limits},
        {{"--size", "9x-1"}, "--size: a page of 9x-1" + limits},
        {{"--size", "30001x1"}, "--size: a page of 30001x1" + limits},
        {{"--size", "30000x30000"}, "--size: a page of 30000x30000" + limits},
        {{"--rotate", "left"}, "--rotate: 'left' is not a number"},
        {{"--scale", "2"}, "--scale: '2' is not a pair of factors like 1,0.5"},
        {{"--scale", "2,x"}, "--scale: 'x' is not a number"},
        {{"--scale=0,1"}, "--scale: a factor of 0 leaves nothing to draw"},
        {{"--size="}, "--size: the value is missing"},
        {{"--mirror=1"}, "--mirror takes no value"},
        {{"--format=gif"}, "--format: 'gif' is not png, bmp, svg or pdf"},
        {{"--background", "#12"}, "--background: '#12' is not a colour like #C04000, black or white"},
        {{"--tolerance=0"}, "--tolerance: a tolerance is greater than 0"},
        {{"--layers=\"a"}, "--layers: '\"a' is not a list of names like walls,\"doors, windows\""},
        {{"--table=-", "d.csv", "-"}, "the picture and the table cannot both go to -", false},
    };
    for (auto const& line : lines) {
        std::vector<std::string> arguments = line.arguments;
        if (line.named) arguments.insert(arguments.end(), {"d.csv", "old.png"});
        expectFailure(arguments, "orn-plot: " + line.message + " (see --help)", 2);
    }
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
    EXPECT_NE(folder_.get("old.png"), "the old picture");
}

}
