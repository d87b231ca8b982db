// Arcs of the plane and of space.
#include "orn/geometry/Arc.h"

#include "tests/support/ExactArc.h"
#include "tests/support/Geometry.h"

namespace {

using ORN::Arc;

template <class D>
class ArcOf : public testing::Test {
protected:
    static constexpr int N = D::value;

    /// In the x-y plane; in space anticlockwise as seen from above.
    static Point<N> at(double x, double y) {
        double const c[] = {x, y, 0};
        return Point<N>{c};
    }
    static Arc<N> flat(Point<N> const& start, double bulge, Point<N> const& end) {
        if constexpr (N == 2)
            return {start, bulge, end};
        else
            return {start, bulge, Vector<3>{0, 0, 1}, end};
    }
};
TYPED_TEST_SUITE(ArcOf, PlaneAndSpace);

TYPED_TEST(ArcOf, ASemicircleAndAStraightSegment) {
    auto const at = this->at;
    auto const arc = this->flat(at(0, 0), 1, at(2, 0)), line = this->flat(at(1, 1), 0, at(4, 5));
    EXPECT_TRUE(arc.start() == at(0, 0) && arc.bulge() == 1 && arc.end() == at(2, 0));
    EXPECT_TRUE(arc.centre() == at(1, 0) && arc.midpoint() == at(1, -1) && arc.radius() == 1 && arc.deviation() == 1);
    EXPECT_DOUBLE_EQ(arc.length(), 3.141592653589793);
    EXPECT_TRUE(arc.extent() == (Extent<TypeParam::value>{at(0, -1), at(2, 0)}));

    EXPECT_TRUE(line.bulge() == 0 && line.length() == 5 && line.deviation() == 0 && line.midpoint() == at(2.5, 3));
    EXPECT_TRUE(!line.centre().isFinite() && line.extent() == (Extent<TypeParam::value>{at(1, 1), at(4, 5)}));
    auto point = at(0, 0);
    auto tangent = at(0, 0) - at(0, 0);
    EXPECT_TRUE(line.measureOff(2.5, point, tangent) && point == at(2.5, 3) && tangent == at(0.6, 0.8) - at(0, 0));
    EXPECT_TRUE(!line.measureOff(-5, point, tangent) && point == at(-2, -3));
    EXPECT_FALSE(arc.measureOff(std::numeric_limits<double>::quiet_NaN(), point, tangent));
    Arc<TypeParam::value> const none;
    EXPECT_TRUE(none.start() == at(0, 0) && none.end() == at(0, 0) && none.bulge() == 0);
    EXPECT_TRUE(!none.measureOff(0, point, tangent) && tangent.isNaN()) << "0 / 0 is no fraction";
}

TYPED_TEST(ArcOf, IsMeasuredOffAndBoxedForEveryBulge) {
    RandomGeometry random{9};
    forEveryBulge(TypeParam::value == 2 ? 2.4 : 10, [&](double bulge) {
        for (int i = 0; i < 20; ++i) {
            auto const arc = someArc<TypeParam::value>(random, bulge);
            EXPECT_TRUE((Extent<TypeParam::value>{arc.start(), arc.end()} <= arc.extent()));
            expectMeasured(arc);
            expectBoxed(arc, arc.extent());
            auto const middle = midpoint(arc.start(), arc.end());
            double const r = arc.radius(), slack = 1e-12 * (1 + r);
            EXPECT_NEAR((arc.midpoint() - middle).length(), arc.deviation(), 1e-14 * (100 + arc.length()));
            if (std::fabs(bulge) < 0.01) continue;
            for (auto const& on : {arc.start(), arc.midpoint(), arc.end()})
                EXPECT_NEAR((arc.centre() - on).length(), r, slack);
        }
    });
}

// Both ends in one quadrant, and nearly the whole circle between them.
TEST(Arc, ExtentOfThePlaneIsThatOfTheEndsBeyondThreeQuartersOfACircle) {
    Point<2> const a{0.6, 0.8}, b{0.8, 0.6};
    double const bulge = std::tan((2 * Angle::pi - std::acos(0.96)) / 4);
    for (Arc<2> const& arc : {Arc<2>{a, bulge, b}, Arc<2>{b, -bulge, a}}) {
        EXPECT_NEAR(arc.radius(), 1, 1e-12);
        EXPECT_TRUE((arc.extent() == Extent<2>{a, b}));
    }
}

TEST(Arc, OfSpaceKeepsOrChoosesItsAxis) {
    using V = Vector<3>;
    Arc<3> const arc{Point<3>{}, 0.3, V{0, 0, 2}, Point<3>{3, 0, 0}};
    EXPECT_TRUE((arc.axis() == V{0, 0, 1})) << "the axis is normalised";
    EXPECT_TRUE(arc.plane().normal() == arc.axis() && arc.plane().pointOnPlane() == arc.start());
    // From left to right, (3 · 0.91) / 1.2: with the quotient formed first it would be the next double.
    EXPECT_EQ(arc.centre().y(), 2.275);
    EXPECT_EQ(written(arc, Arc<2>{{0, 1.5}, {-1, 2}}), L"(0,0,0)[0.3 (0,0,1)](3,0,0)(0,1.5)[0](-1,2)");
    struct {
        V chord, axis;
    } const cases[] = {{{0, 5, 0}, {0, 0, -1}}, {{0, 4, 3}, {0, 0.6, -0.8}}, {{4, 1, 3}, {-0.6, 0, 0.8}},
                       {{0, 0, 7}, {-1, 0, 0}}, {{-2, 2, 0}, {0, 0, -1}},    {{0, 0, 0}, {0, 0, 1}},
                       {{3, -4, 0}, {0, 0, 1}}};
    for (auto const& [chord, axis] : cases) {
        Point<3> const start{1, 2, 3};
        Arc<3> const line{start, start + chord};
        EXPECT_TRUE(line.axis() == axis && line.bulge() == 0) << written(Point<3>{} + chord).c_str();
        EXPECT_NEAR(dot(line.axis(), chord), 0, 1e-15);
    }
    EXPECT_TRUE((Arc<3>{}.axis() == V{0, 0, 1}));
}

TEST(Arc, HalvesMakeTheWhole) {
    Arc<3> first, second;
    for (double const bulge : {1e8, -1.1e9, 1e160, -1.7e308}) {
        Arc<3>{{0, 0, 0}, bulge, Vector<3>{0, 0, 1}, {1, 0, 0}}.bisect(first, second);
        EXPECT_DOUBLE_EQ(first.bulge(), std::copysign(1 - 1 / std::fabs(bulge), bulge));
    }
    RandomGeometry random{11};
    for (int i = 0; i < 300; ++i) {
        Arc<3> const arc = someArc<3>(random, random.magnitude(-3, 1));
        Arc<3> same = arc, other;
        arc.bisect(first, second);
        same.bisect(same, other);
        EXPECT_TRUE(same == first && other == second) << "an output may be the arc itself";
        EXPECT_TRUE(first.start() == arc.start() && second.end() == arc.end() && first.end() == second.start());
        EXPECT_TRUE(first.axis() == second.axis() && first.bulge() == second.bulge());
        EXPECT_NEAR(dot(first.axis(), arc.axis()), 1, 1e-15);
        EXPECT_DOUBLE_EQ(first.bulge(), std::tan(std::atan(arc.bulge()) / 2));
        expectNear(first.end(), arc.midpoint(), 0);
    }
}

}
