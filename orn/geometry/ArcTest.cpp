#include "orn/geometry/Arc.h"

#include "tests/support/ExactArc.h"
#include "tests/support/Geometry.h"

namespace {

using Arc = ORN::Arc<2>;
using Box = Extent<2>;
using P = Point<2>;
using V = Vector<2>;

TEST(Arc, OfASemicircle) {
    Arc const arc{P{0, 0}, 1, P{2, 0}};
    EXPECT_TRUE((arc.start() == P{0, 0} && arc.bulge() == 1 && arc.end() == P{2, 0}));
    EXPECT_TRUE((arc.centre() == P{1, 0} && arc.midpoint() == P{1, -1}));
    EXPECT_TRUE(arc.radius() == 1 && arc.deviation() == 1);
    EXPECT_DOUBLE_EQ(arc.length(), 3.141592653589793);
    EXPECT_TRUE((arc.extent() == Box{P{0, -1}, P{2, 0}}));
    EXPECT_EQ(written(arc, Arc{P{0, 1.5}, P{-1, 2}}), L"(0,0)[1](2,0)(0,1.5)[0](-1,2)");
}

TEST(Arc, OfAStraightSegment) {
    Arc const line{P{1, 1}, P{4, 5}}, none;
    EXPECT_TRUE(line.bulge() == 0 && line.length() == 5 && line.deviation() == 0);
    EXPECT_TRUE((line.midpoint() == P{2.5, 3} && !line.centre().isFinite()));
    EXPECT_TRUE((line.extent() == Box{P{1, 1}, P{4, 5}}));

    P point;
    V tangent;
    EXPECT_TRUE(line.measureOff(2.5, point, tangent));
    EXPECT_TRUE((point == P{2.5, 3} && tangent == V{0.6, 0.8}));
    EXPECT_FALSE(line.measureOff(-5, point, tangent));
    EXPECT_TRUE((point == P{-2, -3}));
    EXPECT_TRUE((none.start() == P{} && none.end() == P{} && none.bulge() == 0));
    EXPECT_FALSE(none.measureOff(0, point, tangent)) << "0 / 0 is no fraction";
    EXPECT_TRUE(tangent.isNaN());
}

TEST(Arc, KeepsToItsCircle) {
    RandomGeometry random{9};
    for (int i = 0; i < 500; ++i) {
        double const b = random.magnitude(-2, 1);
        Arc const arc{random.point<2>(), b, random.point<2>()};
        double const r = arc.radius(), slack = 1e-12 * (1 + r);
        V const chord = arc.end() - arc.start();
        EXPECT_NEAR((arc.centre() - arc.end()).length(), r, slack);
        EXPECT_NEAR((arc.centre() - arc.midpoint()).length(), r, slack);
        EXPECT_NEAR((midpoint(arc.start(), arc.end()) - arc.midpoint()).length(), arc.deviation(), slack);
        EXPECT_EQ(cross(chord, arc.midpoint() - arc.start()) < 0, b > 0) << "a positive bulge lies on the right";
        EXPECT_NEAR(arc.length(), std::fabs(4 * std::atan(b)) * r, slack);
    }
}

TEST(Arc, IsMeasuredOffAndBoxedForEveryBulge) {
    RandomGeometry random{9};
    forEveryBulge(2.4, [&](double bulge) {
        for (int i = 0; i < 20; ++i) {
            // Every other chord is nearly along an axis.
            V const along{random.number(1, 10), random.magnitude(-18, -2)};
            P const start = random.point<2>(),
                    ends[] = {start + random.vector<2>(), start + along, start - along, start + along.perpendicular()};
            Arc const arc{start, bulge, ends[i % 4]};
            expectExact(arc, arc.extent());
        }
    });
    P point;
    V tangent;
    EXPECT_FALSE((Arc{P{0, 0}, 0.3, P{1, 0}}.measureOff(std::numeric_limits<double>::quiet_NaN(), point, tangent)));
}

TEST(Arc, ExtentTakesTheExtremesItPasses) {
    double const root = std::sqrt(0.75);
    // On the unit circle about the origin, from one angle anticlockwise to another.
    struct {
        int from, to;
        Box box;
    } const cases[] = {
        {30, 120, {P{-0.5, 0.5}, P{root, 1}}},
        {30, 210, {P{-1, -0.5}, P{root, 1}}},
        {30, 300, {P{-1, -1}, P{root, 1}}},
        {120, 210, {P{-1, -0.5}, P{-0.5, root}}},
        {300, 390, {P{0.5, -root}, P{1, 0.5}}},
        {210, 480, {P{-root, -1}, P{1, 1}}},
        {30, 60, {P{0.5, 0.5}, P{root, root}}},
        {60, 390, {P{0.5, 0.5}, P{root, root}}},  // both ends in one quadrant, and nearly the whole circle between them
    };
    for (auto const& c : cases) {
        P const a = P{} + V{1, Angle::degrees(c.from)}, b = P{} + V{1, Angle::degrees(c.to)};
        double const bulge = std::tan((c.to - c.from) * Angle::pi / 720);
        for (Box const& box : {Arc{a, bulge, b}.extent(), Arc{b, -bulge, a}.extent()}) {
            expectNear(box.lo(), c.box.lo(), 1e-14);
            expectNear(box.hi(), c.box.hi(), 1e-14);
        }
    }
}

}
