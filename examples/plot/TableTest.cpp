#include "plot/Table.h"

#include <gtest/gtest.h>

namespace {

TEST(Table, QuotesWhatNeedsItAndKeepsAllDigits) {
    drawing::Drawing drawing;
    auto const add = [&](ORN::Arc<2> const& arc, wchar_t const* layer) {
        drawing.add(arc, 0, layer, drawing::measure(arc));
    };
    add({{0.1, 0}, {0.1, 3}}, L"a,b");
    add({{-1, 2}, {2, 6}}, L"\x00E9 \"x\"");
    add({{0, 0}, 1, {0, 2}}, L" \x2603");
    add({{1e-7, 0}, {1e-7, 1e21}}, L"a,b");
    EXPECT_EQ(plot::table(drawing),
              "layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n"
              "\"a,b\",2,0,1e+21,0,1e-07,0,0.1,1e+21\n"
              "\"\xC3\xA9 \"\"x\"\"\",1,0,5,0,-1,2,2,6\n"
              "\" \xE2\x98\x83\",1,1,3.141592653589793,1.5707963267948966,0,0,1,2\n"
              "*,4,1,1e+21,1.5707963267948966,-1,0,2,1e+21\n");
}

}
