// Lines and planes, and where they meet.
#include "orn/geometry/Plane.h"

#include "tests/support/Geometry.h"

namespace {

using ORN::Line;

TEST(Line, KeepsItsDirectionUnlessMadeFromPoints) {
    Line<2> const given{Vector<2>{3, 4}, Point<2>{1, 2}};
    EXPECT_TRUE((given.direction() == Vector<2>{3, 4} && given.point() == Point<2>{1, 2}));
    Line<3> const through = Line<3>::through(Point<3>{1, 1, 1}, Point<3>{1, 4, 5});
    EXPECT_TRUE((through.direction() == Vector<3>{0, 0.6, 0.8} && through.point() == Point<3>{1, 1, 1}));
    EXPECT_TRUE((Line<2>::through(Point<2>{1, 1}, Point<2>{1, 1}).direction().isNaN()));
}

TEST(Line, MeetsAnotherInThePlane) {
    Line<2> const x{Vector<2>{1, 0}, Point<2>{5, 3}}, y{Vector<2>{0, -1}, Point<2>{2, 7}};
    EXPECT_TRUE((intersect(x, y) == Point<2>{2, 3}));
    EXPECT_FALSE((intersect(x, Line<2>{Vector<2>{-1, 0}, Point<2>{0, 0}}).isFinite()));
    RandomGeometry random{5};
    for (int i = 0; i < 200; ++i) {
        Point<2> const common = random.point<2>();
        Line<2> const a = Line<2>::through(random.point<2>(), common), b = Line<2>::through(random.point<2>(), common);
        double const sine = cross(a.direction(), b.direction());
        EXPECT_NEAR((intersect(a, b) - common).length(), 0, 1e-13 / (sine * sine));
    }
}

TEST(Line, ComesClosestToAnotherInSpace) {
    Point<3> p, q;
    crossing(p, q, Line<3>{Vector<3>{1, 0, 0}, Point<3>{9, 2, 1}}, Line<3>{Vector<3>{0, 1, 0}, Point<3>{3, 8, 5}});
    EXPECT_TRUE((p == Point<3>{3, 2, 1} && q == Point<3>{3, 2, 5}));
    RandomGeometry random{6};
    auto const line = [&] { return Line<3>::through(random.point<3>(), random.point<3>()); };
    for (int i = 0; i < 200; ++i) {
        Line<3> const a = line(), b = line();
        double const sine2 = cross(a.direction(), b.direction()).lengthSquared();
        crossing(p, q, a, b);
        EXPECT_NEAR(dot(q - p, a.direction()), 0, 1e-12 / sine2);
        EXPECT_NEAR(dot(q - p, b.direction()), 0, 1e-12 / sine2);
        EXPECT_NEAR(cross(p - a.point(), a.direction()).length(), 0, 1e-12 / sine2);
        EXPECT_NEAR(cross(q - b.point(), b.direction()).length(), 0, 1e-12 / sine2);
    }
    Line<3> const z{Vector<3>{0, 0, 1}, Point<3>{}};
    crossing(p, q, z, Line<3>{Vector<3>{0, 0, 1}, Point<3>{1, 0, 0}});
    EXPECT_FALSE(p.isFinite() || q.isFinite());
}

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
