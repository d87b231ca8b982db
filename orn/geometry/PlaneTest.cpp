#include "orn/geometry/Plane.h"

#include "tests/support/VectorEquality.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <type_traits>

namespace {

using ORN::Line;

static_assert(std::is_trivially_copyable_v<Plane> && sizeof(Plane) == 6 * sizeof(double));

TEST(Plane, NormalisesAndMeasures) {
    Plane const plane{Vector<3>{0, 0, 2}, Point<3>{0, 0, 5}};
    Point<3> const q{1, 1, 2};
    EXPECT_TRUE((plane.normal() == Vector<3>{0, 0, 1} && plane.pointOnPlane() == Point<3>{0, 0, 5}));
    EXPECT_EQ(plane.distanceTo(q), -3);
    EXPECT_EQ(plane.distanceFromOrigin(), 5);
    EXPECT_TRUE((plane.vectorTo(q) == Vector<3>{0, 0, -3}));
    EXPECT_TRUE((plane.project(q) == Point<3>{1, 1, 5}));

    Plane const turned = -plane;
    EXPECT_TRUE((turned.normal() == Vector<3>{0, 0, -1} && turned.pointOnPlane() == plane.pointOnPlane()));
    EXPECT_EQ(turned.distanceTo(q), 3);
    EXPECT_EQ(turned.distanceFromOrigin(), -5);

    EXPECT_EQ(Plane{}.distanceFromOrigin(), 0);
    EXPECT_TRUE((Plane{Vector<3>{}, Point<3>{}}.normal().isNaN()));
}

TEST(Plane, ThroughThreePointsSeesThemRunClockwise) {
    Plane const plane{Point<3>{0, 0, 0}, Point<3>{1, 0, 0}, Point<3>{0, 1, 0}};
    EXPECT_NEAR((plane.normal() - Vector<3>{0, 0, -1}).length(), 0, 1e-15);
    EXPECT_TRUE((plane.pointOnPlane() == Point<3>{1.0 / 3, 1.0 / 3, 0}));

    std::mt19937 random{7};
    std::uniform_real_distribution<double> coordinate{-10, 10};
    auto const point = [&] { return Point<3>{coordinate(random), coordinate(random), coordinate(random)}; };
    for (int i = 0; i < 200; ++i) {
        Point<3> const a = point(), b = point(), c = point(), q = point();
        Plane const abc{a, b, c};
        Vector<3> const twiceArea = cross(c - a, b - a);
        EXPECT_NEAR((abc.normal() - twiceArea.unit()).length(), 0, 1e-13 * 100 / twiceArea.length());
        EXPECT_NEAR(abc.distanceTo(a), 0, 1e-11 / twiceArea.length() * 100);
        EXPECT_NEAR(abc.distanceTo(abc.project(q)), 0, 1e-13);
        EXPECT_NEAR(((q - abc.project(q)) - abc.vectorTo(q)).length(), 0, 1e-13);

        Line<3> const line = Line<3>::through(q, point());
        double const slope = std::fabs(dot(line.direction(), abc.normal()));
        Point<3> const common = intersect(line, abc);
        EXPECT_TRUE(common == intersect(abc, line));
        EXPECT_NEAR(abc.distanceTo(common), 0, 1e-12 / slope);
        EXPECT_NEAR(cross(common - q, line.direction()).length(), 0, 1e-12 / slope);
    }
    EXPECT_FALSE((intersect(Line<3>{Vector<3>{1, 0, 0}, Point<3>{0, 0, 1}}, Plane{}).isFinite()));
}

TEST(Plane, MeetsAnotherInALine) {
    Plane const z{Vector<3>{0, 0, 1}, Point<3>{8, 9, 1}}, x{Vector<3>{1, 0, 0}, Point<3>{2, 5, 6}};
    Line<3> const zx = intersect(z, x), xz = intersect(x, z);
    EXPECT_TRUE((zx.direction() == Vector<3>{0, 1, 0} && zx.point() == Point<3>{2, 0, 1}));
    EXPECT_TRUE((xz.direction() == Vector<3>{0, -1, 0} && xz.point() == Point<3>{2, 0, 1}));
    EXPECT_TRUE((intersect(z, z).point().isNaN() && intersect(z, z).direction().isNaN()));

    // A skew pair, worked by hand: 3x + 4z = 10 and y = 2 meet along (-4, 0, 3)/5, nearest the origin at (1.2, 2, 1.6).
    Plane const a{Vector<3>{3, 0, 4}, Point<3>{2, 7, 1}}, b{Vector<3>{0, 1, 0}, Point<3>{5, 2, 5}};
    Line<3> const ab = intersect(a, b);
    EXPECT_NEAR((ab.direction() - Vector<3>{-0.8, 0, 0.6}).length(), 0, 1e-15);
    EXPECT_NEAR((ab.point() - Point<3>{1.2, 2, 1.6}).length(), 0, 1e-15);
}

TEST(Plane, WritesNormalAndPoint) {
    std::wostringstream os;
    os << Plane{} << L' ' << Plane{Vector<3>{1, -1, 0}, Point<3>{1, 2.5, 3}};
    EXPECT_EQ(os.str(), L"(0,0,1)@(0,0,0) (0.707107,-0.707107,0)@(1,2.5,3)");
}

}
