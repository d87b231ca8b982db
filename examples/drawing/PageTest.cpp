#include "drawing/Page.h"

#include "orn/foundation/Error.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using drawing::Drawing;
using drawing::Page;

void add(Drawing& drawing, Point<2> const& a, double bulge, Point<2> const& b) {
    ORN::Arc<2> const arc{a, bulge, b};
    drawing.add(arc, 0, L"0", drawing::measure(arc));
}

Drawing lines(std::vector<std::pair<Point<2>, Point<2>>> const& ends) {
    Drawing drawing;
    for (auto const& [a, b] : ends) add(drawing, a, 0, b);
    return drawing;
}

void expectAt(Page const& page, Point<2> const& p, double x, double y) {
    Point<2> const q = p * page.transform();
    EXPECT_NEAR(q.x(), x, 1e-9) << p.x() << ' ' << p.y();
    EXPECT_NEAR(q.y(), y, 1e-9) << p.x() << ' ' << p.y();
}

TEST(Page, FillsTheNarrowerSideUpToItsMargins) {
    Drawing const wide = lines({{{10, 5}, {30, 15}}});
    Page const page{wide, {1000, 800}, {}};
    expectAt(page, {10, 5}, 40, 630);  // 20 wide into 920: 46 a unit
    expectAt(page, {30, 15}, 960, 170);
    Page const low{wide, {1000, 100}, {}};
    expectAt(low, {10, 5}, 408, 96);  // 10 high into 92: 9.2 a unit
    expectAt(low, {30, 15}, 592, 4);
}

TEST(Page, ViewsScaleThenMirrorThenRotate) {
    Drawing const corner = lines({{{0, 0}, {20, 0}}, {{0, 0}, {0, 10}}});
    expectAt(Page{corner, {1000, 1000}, {.mirrored = true}}, {20, 0}, 40, 730);
    expectAt(Page{corner, {1000, 1000}, {.degrees = 90}}, {20, 0}, 730, 40);
    expectAt(Page{corner, {1000, 1000}, {.scaleX = 0.5}}, {20, 0}, 960, 960);
    // Twice as high, mirrored, a quarter turn: (20, 0) to (-20, 0) to (0, -20); (0, 10) to (0, 20) to (-20, 0).
    drawing::View const all{.scaleX = 1, .scaleY = 2, .mirrored = true, .degrees = 90};
    expectAt(Page{corner, {1000, 1000}, all}, {20, 0}, 960, 960);
    expectAt(Page{corner, {1000, 1000}, all}, {0, 10}, 40, 40);
}

TEST(Page, HoldsWholeArcsUnderEveryView) {
    // The upper half of the unit circle, three quarters of it, and one that is nearly whole and has both of its ends in
    // one quadrant; the page leaves 846.4 pixels for them.
    double const nearlyWhole = 60, ofEnd = 4 * std::atan(60.0);
    struct {
        double bulge;
        Point<2> end;
        double degrees, radius;
    } const cases[] = {
        {1, {-1, 0}, 0, 423.2},
        {1, {-1, 0}, 45, 846.4 / 1.7071067811865475},
        {2.414213562373095, {0, -1}, 0, 423.2},
        {2.414213562373095, {0, -1}, 45, 423.2},
        {nearlyWhole, {std::cos(ofEnd), std::sin(ofEnd)}, 0, 423.2},
        {nearlyWhole, {std::cos(ofEnd), std::sin(ofEnd)}, 130, 423.2},
    };
    for (auto const& c : cases) {
        Drawing drawing;
        add(drawing, {1, 0}, c.bulge, c.end);
        Page const page{drawing, {920, 920}, {.degrees = c.degrees}};
        EXPECT_NEAR((Vector<2>{1, 0} * page.transform()).length(), c.radius, 1e-9) << c.bulge << ' ' << c.degrees;
    }
}

TEST(Page, DrawingsWithoutAnExtentAreCentred) {
    Page const point{lines({{{7, 7}, {7, 7}}}), {300, 200}, {}};
    expectAt(point, {7, 7}, 150, 100);
    expectAt(point, {8, 7}, 151, 100);
    Page const upright{lines({{{7, 0}, {7, 23}}}), {300, 200}, {}};
    expectAt(upright, {7, 23}, 150, 8);
}

TEST(Page, WhatNoNumberHoldsIsRefused) {
    EXPECT_THROW((Page{lines({{{-1.7e308, 0}, {1.7e308, 0}}}), {300, 200}, {}}), ORN::OrnError);
    EXPECT_THROW((Page{lines({{{0, 0}, {1e300, 0}}}), {300, 200}, {.scaleX = 1e300}}), ORN::OrnError);
    EXPECT_THROW((Page{lines({{{0, 0}, {5e-324, 0}}}), {300, 200}, {}}), ORN::OrnError);
}

}
