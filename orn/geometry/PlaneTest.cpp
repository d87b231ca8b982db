#include "orn/geometry/Plane.h"

#include "tests/support/Geometry.h"

namespace {

using ORN::Line;

TEST(Plane, NormalisesAndMeasures) {
    Plane const plane{Vector<3>{0, 0, 2}, Point<3>{0, 0, 5}}, turned = -plane;
    Point<3> const q{1, 1, 2};
    EXPECT_TRUE((plane.normal() == Vector<3>{0, 0, 1} && plane.pointOnPlane() == Point<3>{0, 0, 5}));
    EXPECT_TRUE(plane.distanceTo(q) == -3 && plane.distanceFromOrigin() == 5);
    EXPECT_TRUE((plane.vectorTo(q) == Vector<3>{0, 0, -3} && plane.project(q) == Point<3>{1, 1, 5}));
    EXPECT_TRUE((turned.normal() == Vector<3>{0, 0, -1} && turned.pointOnPlane() == plane.pointOnPlane()));
    EXPECT_TRUE(turned.distanceTo(q) == 3 && turned.distanceFromOrigin() == -5);
    EXPECT_TRUE((Plane{Vector<3>{}, Point<3>{}}.normal().isNaN()));
    EXPECT_EQ(written(Plane{}, L' ', Plane{Vector<3>{1, -1, 0}, Point<3>{1, 2.5, 3}}),
              L"(0,0,1)@(0,0,0) (0.707107,-0.707107,0)@(1,2.5,3)");
}

TEST(Plane, ThroughThreePointsSeesThemRunClockwise) {
    Plane const plane{Point<3>{0, 0, 0}, Point<3>{1, 0, 0}, Point<3>{0, 1, 0}};
    EXPECT_NEAR((plane.normal() - Vector<3>{0, 0, -1}).length(), 0, 1e-15);
    EXPECT_TRUE((plane.pointOnPlane() == Point<3>{1.0 / 3, 1.0 / 3, 0}));

    RandomGeometry random{7};
    for (int i = 0; i < 200; ++i) {
        Point<3> const a = random.point<3>(), b = random.point<3>(), c = random.point<3>(), q = random.point<3>();
        Plane const abc{a, b, c};
        Vector<3> const twiceArea = cross(c - a, b - a);
        EXPECT_NEAR((abc.normal() - twiceArea.unit()).length(), 0, 1e-13 * 100 / twiceArea.length());
        EXPECT_NEAR(abc.distanceTo(a), 0, 1e-11 / twiceArea.length() * 100);
        EXPECT_NEAR(abc.distanceTo(abc.project(q)), 0, 1e-13);
        EXPECT_NEAR(((q - abc.project(q)) - abc.vectorTo(q)).length(), 0, 1e-13);

        Line<3> const line = Line<3>::through(q, random.point<3>());
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
    expectNear(ab.point(), Point<3>{1.2, 2, 1.6}, 1e-15);
}

}
