#include "drawing/Page.h"

#include "drawing/Flatten.h"

#include "tests/support/Geometry.h"

#include "orn/foundation/Error.h"

#include <gtest/gtest.h>

namespace {

using drawing::Drawing;
using drawing::Page;

struct Mapped {
    Point<2> from, to;
};

Drawing lines(std::vector<Mapped> const& ends) {
    Drawing drawing;
    for (auto const& [from, to] : ends) drawing.add({from, to}, 0, L"0", drawing::measure({from, to}));
    return drawing;
}

TEST(Page, HasTheDrawingInItsMiddleAsTheViewTurnsIt) {
    Drawing const wide = lines({{{10, 5}, {30, 15}}}), corner = lines({{{0, 0}, {20, 0}}, {{0, 0}, {0, 10}}});
    Drawing const dot = lines({{{7, 7}, {7, 7}}}), upright = lines({{{7, 0}, {7, 23}}});
    struct {
        Drawing const& drawing;
        drawing::PageSize size;
        drawing::View view;
        std::vector<Mapped> points;
    } const cases[] = {
        {wide, {1000, 800}, {}, {{{10, 5}, {40, 630}}, {{30, 15}, {960, 170}}}},  // 20 wide into 920: 46 a unit
        {wide, {1000, 100}, {}, {{{10, 5}, {408, 96}}, {{30, 15}, {592, 4}}}},    // 10 high into 92: 9.2 a unit
        {corner, {1000, 1000}, {.mirrored = true}, {{{20, 0}, {40, 730}}}},
        // Twice as high, mirrored, a quarter turn: (20, 0) to (-20, 0) to (0, -20); (0, 10) to (0, 20) to (-20, 0).
        {corner,
         {1000, 1000},
         {.scaleX = 1, .scaleY = 2, .mirrored = true, .degrees = 90},
         {{{20, 0}, {960, 960}}, {{0, 10}, {40, 40}}}},
        {wide,
         {1000, 800},
         {.closeup = {.zoom = 2, .shift = {7, -3}}},
         {{{20, 10}, {507, 397}}, {{10, 5}, {-413, 857}}}},
        {dot, {300, 200}, {}, {{{7, 7}, {150, 100}}, {{8, 7}, {151, 100}}}},
        {upright, {300, 200}, {}, {{{7, 23}, {150, 8}}}},
    };
    for (auto const& c : cases) {
        Page const page{c.drawing, c.size, c.view};
        for (auto const& [from, to] : c.points) EXPECT_LT((from * page.transform() - to).length(), 1e-9) << to.x();
    }
}

TEST(Page, IsFilledByArcsUpToItsMargins) {
    RandomGeometry random{9};
    for (int i = 0; i < 300; ++i) {
        Drawing drawing;
        for (int n = 0; n < 5; ++n) {
            ORN::Arc<2> const arc{random.point<2>(), random.number(-3, 3), random.point<2>()};
            drawing.add(arc, 0, L"0", drawing::measure(arc));
        }
        Page const page{drawing, {160, 120}, {.scaleX = 1.5, .degrees = 20.0 * i}};
        Extent<2> drawn;
        for (auto const& entity : drawing.entities()) drawn |= drawing::mappedExtent(entity.arc, page.transform());
        EXPECT_NEAR(std::max((drawn.hi(0) - drawn.lo(0)) / 160, (drawn.hi(1) - drawn.lo(1)) / 120), 0.92, 1e-9);
        EXPECT_LT((drawn.centre() - Point<2>{80, 60}).length(), 1e-9);
    }
}

TEST(Page, HasLinesOfAThousandthOfItsDiagonal) {
    for (auto const& [size, width] : {std::pair{drawing::PageSize{3000, 4000}, 5}, {drawing::PageSize{300, 400}, 1}}) {
        EXPECT_DOUBLE_EQ((Page{lines({{{0, 0}, {1, 1}}}), size, {}}.lineWidth()), width);
    }
}

TEST(Page, RefusesWhatNoNumberHolds) {
    EXPECT_THROW((Page{lines({{{-1.7e308, 0}, {1.7e308, 0}}}), {300, 200}, {}}), ORN::OrnError);
    EXPECT_THROW((Page{lines({{{0, 0}, {1e300, 0}}}), {300, 200}, {.scaleX = 1e300}}), ORN::OrnError);
    EXPECT_THROW((Page{lines({{{0, 0}, {5e-324, 0}}}), {300, 200}, {}}), ORN::OrnError);
}

}
