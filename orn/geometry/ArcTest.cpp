#include "orn/geometry/Arc.h"

#include "tests/support/VectorEquality.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <type_traits>

namespace {

using Arc = ORN::Arc<2>;
using Box = Extent<2>;
using P = Point<2>;
using V = Vector<2>;

static_assert(std::is_trivially_copyable_v<Arc> && sizeof(Arc) == 5 * sizeof(double));

double distance(P const& a, P const& b) { return (a - b).length(); }

TEST(Arc, OfASemicircle) {
    Arc const arc{P{0, 0}, 1, P{2, 0}};
    EXPECT_TRUE((arc.start() == P{0, 0} && arc.bulge() == 1 && arc.end() == P{2, 0}));
    EXPECT_TRUE((arc.centre() == P{1, 0}));
    EXPECT_TRUE((arc.midpoint() == P{1, -1}));
    EXPECT_EQ(arc.radius(), 1);
    EXPECT_DOUBLE_EQ(arc.length(), 3.141592653589793);
    EXPECT_EQ(arc.deviation(), 1);
    EXPECT_TRUE((arc.extent() == Box{P{0, -1}, P{2, 0}}));

    std::wostringstream os;
    os << arc << Arc{P{0, 1.5}, P{-1, 2}};
    EXPECT_EQ(os.str(), L"(0,0)[1](2,0)(0,1.5)[0](-1,2)");
}

TEST(Arc, OfAStraightSegment) {
    Arc const line{P{1, 1}, P{4, 5}};
    EXPECT_EQ(line.bulge(), 0);
    EXPECT_EQ(line.length(), 5);
    EXPECT_EQ(line.deviation(), 0);
    EXPECT_TRUE((line.midpoint() == P{2.5, 3}));
    EXPECT_FALSE(line.centre().isFinite());
    EXPECT_TRUE((line.extent() == Box{P{1, 1}, P{4, 5}}));

    P point;
    V tangent;
    EXPECT_TRUE(line.measureOff(2.5, point, tangent));
    EXPECT_TRUE((point == P{2.5, 3} && tangent == V{0.6, 0.8}));
    EXPECT_FALSE(line.measureOff(-5, point, tangent));
    EXPECT_TRUE((point == P{-2, -3}));

    Arc const none;
    EXPECT_TRUE((none.start() == P{} && none.end() == P{} && none.bulge() == 0));
    EXPECT_FALSE(none.measureOff(0, point, tangent)) << "0 / 0 is no fraction";
    EXPECT_TRUE(tangent.isNaN());
}

TEST(Arc, KeepsToItsCircle) {
    std::mt19937 random{9};
    std::uniform_real_distribution<double> coordinate{-10, 10}, size{-2, 1};
    for (int i = 0; i < 500; ++i) {
        double const b = (i % 2 ? -1 : 1) * std::pow(10, size(random));
        Arc const arc{P{coordinate(random), coordinate(random)}, b, P{coordinate(random), coordinate(random)}};
        double const r = arc.radius(), slack = 1e-12 * (1 + r);
        V const chord = arc.end() - arc.start();
        EXPECT_NEAR(distance(arc.centre(), arc.end()), r, slack);
        EXPECT_NEAR(distance(arc.centre(), arc.midpoint()), r, slack);
        EXPECT_NEAR(distance(midpoint(arc.start(), arc.end()), arc.midpoint()), arc.deviation(), slack);
        EXPECT_EQ(cross(chord, arc.midpoint() - arc.start()) < 0, b > 0) << "a positive bulge lies on the right";
        EXPECT_NEAR(arc.length(), std::fabs(4 * std::atan(b)) * r, slack);

        P point;
        V tangent;
        EXPECT_TRUE(arc.measureOff(0, point, tangent));
        EXPECT_NEAR(distance(point, arc.start()), 0, slack);
        EXPECT_TRUE(arc.measureOff(arc.length() / 2, point, tangent));
        EXPECT_NEAR(distance(point, arc.midpoint()), 0, slack);
        EXPECT_NEAR((tangent - chord.unit()).length(), 0, 1e-10);
        EXPECT_TRUE(arc.measureOff(arc.length(), point, tangent));
        EXPECT_NEAR(distance(point, arc.end()), 0, slack);
        EXPECT_FALSE(arc.measureOff(arc.length() * 1.01, point, tangent));
        EXPECT_NEAR(distance(point, arc.centre()), r, slack) << "beyond the end the circle goes on";
        EXPECT_FALSE(arc.measureOff(-1e-9, point, tangent));
        EXPECT_FALSE(arc.measureOff(std::numeric_limits<double>::quiet_NaN(), point, tangent));
    }
}

TEST(Arc, ExtentTakesTheExtremesItPasses) {
    // On the unit circle about the origin, from one angle anticlockwise to another.
    struct {
        int from, to;
        double lo[2], hi[2];
    } const cases[] = {
        {30, 120, {-0.5, 0.5}, {std::sqrt(0.75), 1}},
        {30, 210, {-1, -0.5}, {std::sqrt(0.75), 1}},
        {30, 300, {-1, -1}, {std::sqrt(0.75), 1}},
        {120, 210, {-1, -0.5}, {-0.5, std::sqrt(0.75)}},
        {300, 390, {0.5, -std::sqrt(0.75)}, {1, 0.5}},
        {210, 480, {-std::sqrt(0.75), -1}, {1, 1}},
        {30, 60, {0.5, 0.5}, {std::sqrt(0.75), std::sqrt(0.75)}},
        // Both ends in one quadrant, and nearly the whole circle between them.
        {60, 390, {0.5, 0.5}, {std::sqrt(0.75), std::sqrt(0.75)}},
    };
    for (auto const& c : cases) {
        P const a = P{} + V{1, Angle::degrees(c.from)}, b = P{} + V{1, Angle::degrees(c.to)};
        double const bulge = std::tan((c.to - c.from) * Angle::pi / 720);
        for (Box const& box : {Arc{a, bulge, b}.extent(), Arc{b, -bulge, a}.extent()})
            for (int i = 0; i < 2; ++i) {
                EXPECT_NEAR(box.lo(i), c.lo[i], 1e-14) << c.from << ' ' << c.to;
                EXPECT_NEAR(box.hi(i), c.hi[i], 1e-14) << c.from << ' ' << c.to;
            }
    }
}

}
