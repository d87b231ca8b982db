// Everything that can be wrong: one line that says what and where, status 1, and the old picture as it was.
#include "plot/TestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace plottest;

constexpr char const* oldPicture = "the old picture";

void expectFailure(std::vector<std::wstring> const& arguments, std::string const& message, Folder const& folder,
                   int status = 1) {
    std::vector<std::string> const before = folder.names();
    Outcome const outcome = runPlot(arguments);
    EXPECT_EQ(outcome.status, status) << message;
    EXPECT_EQ(outcome.out, "") << message;
    EXPECT_EQ(outcome.error, message + "\n");
    EXPECT_TRUE(readFile("old.png") == oldPicture) << message;
    EXPECT_EQ(folder.names(), before) << message;
}

TEST(PlotFailure, WhatIsWrongInADrawing) {
    Folder const folder;
    writeFile("old.png", oldPicture);
    std::string const header = "x1,y1,x2,y2,bulge,layer,colour\n", good = "0,0,1,1,0,a,#000000\n";
    std::string const utf8Mark = "\xEF\xBB\xBF";
    struct {
        std::string bytes, message;
    } const drawings[] = {
        {"", "d.csv:1: the columns x1, y1, x2, y2 are missing"},
        {"x1;y1;x2;y2\n1;2;3;4\n", "d.csv:1: the columns x1, y1, x2, y2 are missing in the header 'x1;y1;x2;y2'"},
        {"y1,X1,bulge,x2\n1,2,0,3\n", "d.csv:1: the columns x1, y2 are missing in the header 'y1,X1,bulge,x2'"},
        {"x1,y1,x2\n1,2,3\n", "d.csv:1: the column y2 is missing in the header 'x1,y1,x2'"},
        {header, "d.csv: there is nothing to draw"},
        {header + "\n,,,\n", "d.csv: there is nothing to draw"},
        {header + good + "0,0,1,1,abc\n", "d.csv:3: bulge: 'abc' is not a number"},
        {header + good + "\n\r\n0,0,1,1 1,0\n", "d.csv:5: y2: '1 1' is not a number"},
        {header + "0,,1,1\n", "d.csv:2: y1: '' is not a number"},
        {header + "0,0\n", "d.csv:2: x2: '' is not a number"},
        {header + "nan,0,1,1\n", "d.csv:2: x1: 'nan' is not a number"},
        {header + "0,0,1e309,1\n", "d.csv:2: x2: '1e309' is not a number"},
        {header + "0,0,-inf,1\n", "d.csv:2: x2: '-inf' is not a number"},
        {header + "0,0,1,0x10\n", "d.csv:2: y2: '0x10' is not a number"},
        {header + "0,0,1,\"\x1B[2J\n\"\n", "d.csv:2: y2: ' [2J ' is not a number"},
        {header + "0,0,1," + std::string(1000, '7') + "x\n",
         "d.csv:2: y2: '" + std::string(40, '7') + "...' is not a number"},
        {header + good + "0,0,1,1,0,a,red\n", "d.csv:3: colour: 'red' is not a colour like #C04000"},
        {header + "0,0,1,1,0,a,#12345\n", "d.csv:2: colour: '#12345' is not a colour like #C04000"},
        {header + "0,0,1,1,0,a,#12345G\n", "d.csv:2: colour: '#12345G' is not a colour like #C04000"},
        {header + "-1e308,0,1e308,0,1\n", "d.csv:2: the row is too large to be measured"},
        {header + good + "0,0,0,1,0,\"b\n" + good,
         "d.csv:4: A quoted field is not closed. (The row begins in line 3.)"},
        {utf8Mark + header + good + "0,0,1,1,0,\xF8,\n",
         "d.csv:3: The file \"d.csv\" holds text that is not valid in its encoding."},
        {utf8Mark + header + good + "0,0,1,1,0,\xE2\x82",
         "d.csv:3: The file \"d.csv\" holds text that is not valid in its encoding."},
        {std::string{"\xFF\xFE\x00\xDC\x0A\x00", 6},
         "d.csv:1: The file \"d.csv\" holds text that is not valid in its encoding."},
    };
    for (auto const& drawing : drawings) {
        writeFile("d.csv", drawing.bytes);
        expectFailure({L"d.csv", L"old.png"}, drawing.message, folder);
    }
}

TEST(PlotFailure, WhatIsWrongOnTheCommandLine) {
    Folder const folder;
    writeFile("old.png", oldPicture);
    writeFile("d.csv", "x1,y1,x2,y2\n0,0,1,1\n");
    std::string const limits = " pixels cannot be drawn: at most 30000 a side and 50000000 in all";
    struct {
        std::vector<std::wstring> arguments;
        std::string message;
    } const lines[] = {
        {{}, "a drawing and a picture must be named"},
        {{L"d.csv"}, "a picture must be named"},
        {{L"d.csv", L"old.png", L"more.png"}, "'more.png' is one name too many"},
        {{L"d.csv", L"old.jpg"}, "old.jpg: the name of a picture ends in .png, .bmp, .svg or .pdf"},
        {{L"d.csv", L".png"}, ".png: the name of a picture ends in .png, .bmp, .svg or .pdf"},
        {{L"--colour", L"d.csv", L"old.png"}, "unknown option --colour"},
        {{L"-x", L"d.csv", L"old.png"}, "unknown option -x"},
        {{L"d.csv", L"old.png", L"--size"}, "--size: the value is missing"},
        {{L"--size", L"100", L"d.csv", L"old.png"}, "--size: '100' is not a size like 1200x900"},
        {{L"--size", L"axb", L"d.csv", L"old.png"}, "--size: 'axb' is not a size like 1200x900"},
        {{L"--size", L"0x9", L"d.csv", L"old.png"}, "--size: a page of 0x9" + limits},
        {{L"--size", L"9x-1", L"d.csv", L"old.png"}, "--size: a page of 9x-1" + limits},
        {{L"--size", L"30001x1", L"d.csv", L"old.png"}, "--size: a page of 30001x1" + limits},
        {{L"--size", L"30000x30000", L"d.csv", L"old.png"}, "--size: a page of 30000x30000" + limits},
        {{L"--rotate", L"left", L"d.csv", L"old.png"}, "--rotate: 'left' is not a number"},
        {{L"--scale", L"2", L"d.csv", L"old.png"}, "--scale: '2' is not a pair of factors like 1,0.5"},
        {{L"--scale", L"2,x", L"d.csv", L"old.png"}, "--scale: 'x' is not a number"},
        {{L"--scale=0,1", L"d.csv", L"old.png"}, "--scale: a factor of 0 leaves nothing to draw"},
        {{L"--size=", L"d.csv", L"old.png"}, "--size: the value is missing"},
        {{L"--mirror=1", L"d.csv", L"old.png"}, "--mirror takes no value"},
        {{L"--format=gif", L"d.csv", L"old.png"}, "--format: 'gif' is not png, bmp, svg or pdf"},
        {{L"--background", L"#12", L"d.csv", L"old.png"},
         "--background: '#12' is not a colour like #C04000, black or white"},
        {{L"--tolerance=0", L"d.csv", L"old.png"}, "--tolerance: a tolerance is greater than 0"},
        {{L"--table=-", L"d.csv", L"-"}, "the picture and the table cannot both go to -"},
    };
    for (auto const& line : lines)
        expectFailure(line.arguments, "orn-plot: " + line.message + " (see --help)", folder, 2);

    expectFailure({L"none.csv", L"old.png"}, "The file \"none.csv\" cannot be opened: No such file or directory.",
                  folder);
    expectFailure({L"--layers=1", L"d.csv", L"old.png"}, "d.csv: there is no layer '1'", folder);
    writeFile("far.csv", "x1,y1,x2,y2\n0,0,1e10,1\n");
    expectFailure({L"--scale", L"1e300,1", L"far.csv", L"old.png"},
                  "far.csv: the drawing is too large, or too small, to be fitted into a page", folder);
}

TEST(PlotFailure, APictureThatCannotBeWritten) {
    Folder const folder;
    writeFile("old.png", oldPicture);
    writeFile("d.csv", "x1,y1,x2,y2\n0,0,1,1\n");
    std::filesystem::create_directory("folder.png");
    for (std::wstring const& picture : {std::wstring{L"none/p.png"}, std::wstring{L"folder.png"}}) {
        std::vector<std::string> const before = folder.names();
        Outcome const outcome = runPlot({L"--size", L"50x50", L"d.csv", picture});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.error, picture[0] == L'n' ? "none/p.png: the folder 'none' is not there\n"
                                                    : "folder.png: this is a folder\n");
        EXPECT_EQ(folder.names(), before);
    }
    EXPECT_EQ(runPlot({L"--size", L"50x50", L"d.csv", L"old.png"}).status, 0);
    EXPECT_FALSE(readFile("old.png") == oldPicture);
}

}
