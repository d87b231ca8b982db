#include "orn/geometry/SpatialArc.h"

#include "tests/support/ExactArc.h"
#include "tests/support/Geometry.h"

namespace {

using Arc = ORN::Arc<3>;
using Box = Extent<3>;
using P = Point<3>;
using V = Vector<3>;

Arc randomArc(RandomGeometry& random) {
    P const a = random.point<3>(), b = random.point<3>();
    return Arc{a, random.magnitude(-3, 1), cross(b - a, random.vector<3>()), b};
}

TEST(SpatialArc, OfASemicircle) {
    Arc const arc{P{0, 0, 0}, 1, V{0, 0, 2}, P{2, 0, 0}};
    EXPECT_TRUE((arc.axis() == V{0, 0, 1})) << "the axis is normalised";
    EXPECT_TRUE((arc.centre() == P{1, 0, 0} && arc.midpoint() == P{1, -1, 0}));
    EXPECT_TRUE(arc.radius() == 1 && arc.deviation() == 1);
    EXPECT_TRUE((arc.extent() == Box{P{0, -1, 0}, P{2, 0, 0}}));
    EXPECT_TRUE((arc.plane().normal() == arc.axis() && arc.plane().pointOnPlane() == arc.start()));

    Arc halves[2];
    arc.bisect(halves[0], halves[1]);
    for (Arc const& half : halves) EXPECT_DOUBLE_EQ(half.bulge(), 0.41421356237309504880);
    EXPECT_TRUE((halves[0].end() == P{1, -1, 0} && halves[1].start() == P{1, -1, 0}));

    EXPECT_EQ(written(arc), L"(0,0,0)[1 (0,0,1)](2,0,0)");

    // From left to right, (3 · 0.91) / 1.2: with the quotient formed first it would be the next double.
    EXPECT_EQ((Arc{P{}, 0.3, V{0, 0, 1}, P{3, 0, 0}}.centre().y()), 2.275);
}

TEST(SpatialArc, OfAStraightSegmentChoosesItsAxis) {
    struct {
        V chord, axis;
    } const cases[] = {{{0, 5, 0}, {0, 0, -1}}, {{0, 4, 3}, {0, 0.6, -0.8}}, {{4, 1, 3}, {-0.6, 0, 0.8}},
                       {{0, 0, 7}, {-1, 0, 0}}, {{-2, 2, 0}, {0, 0, -1}},    {{0, 0, 0}, {0, 0, 1}},
                       {{3, -4, 0}, {0, 0, 1}}};
    for (auto const& c : cases) {
        P const start{1, 2, 3};
        Arc const line{start, start + c.chord};
        EXPECT_EQ(line.bulge(), 0);
        EXPECT_TRUE(line.axis() == c.axis) << c.chord.x() << ' ' << c.chord.y() << ' ' << c.chord.z();
        EXPECT_NEAR(dot(line.axis(), c.chord), 0, 1e-15);
        EXPECT_TRUE(line.midpoint() == midpoint(line.start(), line.end()));
        EXPECT_TRUE((line.extent() == Box{line.start(), line.end()}));
    }
    Arc const none;
    EXPECT_TRUE((none.axis() == V{0, 0, 1} && none.start() == P{} && none.end() == P{} && none.bulge() == 0));
}

TEST(SpatialArc, AboutZIsTheArcOfThePlane) {
    RandomGeometry random{10};
    for (int i = 0; i < 300; ++i) {
        double const b = random.magnitude(-3, 1);
        Point<2> const from = random.point<2>(), to = random.point<2>();
        ORN::Arc<2> const flat{from, b, to};
        Arc const arc{P{from.x(), from.y(), 0}, b, V{0, 0, 1}, P{to.x(), to.y(), 0}};
        double const slack = 1e-12 * (1 + flat.radius());
        auto const near = [&](P const& p, Point<2> const& q) { expectNear(p, P{q.x(), q.y(), 0}, slack); };
        near(arc.centre(), flat.centre());
        near(arc.midpoint(), flat.midpoint());
        EXPECT_NEAR(arc.radius(), flat.radius(), slack);
        EXPECT_EQ(arc.length(), flat.length());
    }
}

TEST(SpatialArc, IsMeasuredOffAndBoxedForEveryBulge) {
    RandomGeometry random{11};
    forEveryBulge(10, [&](double bulge) {
        for (int i = 0; i < 10; ++i) {
            P const start = random.point<3>(), end = random.point<3>();
            Arc const arc{start, bulge, cross(end - start, random.vector<3>()), end};
            EXPECT_TRUE((Box{start, end} <= arc.extent()));
            expectExact(arc, arc.extent());
        }
    });
    // More than half a circle, and one so flat that its centre is a million chords away.
    EXPECT_TRUE((Arc{P{0, 0, 0}, 3, V{0, 0, 1}, P{6, 0, 0}}.extent() == Box{P{-2, -9, 0}, P{8, 0, 0}}));
    Box const flat = Arc{P{0, 0, 0}, 1e-7, V{0, 0, 1}, P{1, 0, 0}}.extent();
    EXPECT_DOUBLE_EQ(flat.lo(1), -0.5e-7);
    EXPECT_EQ(flat.hi(1), 0);
    EXPECT_TRUE(flat.lo(0) == 0 && flat.hi(0) == 1);
}

TEST(SpatialArc, HalvesMakeTheWhole) {
    RandomGeometry random{11};
    for (double const bulge : {1e8, -1.1e9, 1e160, -1.7e308}) {
        Arc first, second;
        Arc{P{0, 0, 0}, bulge, V{0, 0, 1}, P{1, 0, 0}}.bisect(first, second);
        EXPECT_DOUBLE_EQ(first.bulge(), std::copysign(1 - 1 / std::fabs(bulge), bulge));
    }
    for (int i = 0; i < 300; ++i) {
        Arc const arc = randomArc(random);
        Arc first, second;
        arc.bisect(first, second);
        double const slack = 1e-12 * (1 + arc.radius());
        EXPECT_TRUE(first.start() == arc.start() && second.end() == arc.end() && first.end() == second.start());
        EXPECT_EQ(first.bulge(), second.bulge());
        EXPECT_DOUBLE_EQ(first.bulge(), std::tan(std::atan(arc.bulge()) / 2));
        EXPECT_NEAR(first.length() + second.length(), arc.length(), slack);
        expectNear(first.centre(), arc.centre(), slack * 1e3);

        Arc same = arc, other;
        same.bisect(same, other);
        EXPECT_TRUE(same.end() == first.end() && other.end() == arc.end()) << "an output may be the arc itself";
    }
}

}
