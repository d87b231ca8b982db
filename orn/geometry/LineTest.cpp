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
    Line<2> const x{Vector<2>{1, 0}, Point<2>{5, 3}};
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
    RandomGeometry random{6};
    auto const line = [&] { return Line<3>::through(random.point<3>(), random.point<3>()); };
    for (int i = 0; i < 200; ++i) {
        Line<3> const lines[] = {line(), line()};
        double const slack = 1e-12 / cross(lines[0].direction(), lines[1].direction()).lengthSquared();
        crossing(p, q, lines[0], lines[1]);
        for (int k = 0; k < 2; ++k) {
            EXPECT_NEAR(dot(q - p, lines[k].direction()), 0, slack);
            EXPECT_NEAR(cross((k == 0 ? p : q) - lines[k].point(), lines[k].direction()).length(), 0, slack);
        }
    }
    Line<3> const z{Vector<3>{0, 0, 1}, Point<3>{}};
    crossing(p, q, z, Line<3>{Vector<3>{0, 0, 1}, Point<3>{1, 0, 0}});
    EXPECT_FALSE(p.isFinite() || q.isFinite());
}

TEST(Plane, NormalisesAndMeasures) {
    Plane const plane{Vector<3>{0, 0, 2}, Point<3>{0, 0, 5}}, turned = -plane;
    EXPECT_EQ(written(plane, Plane{}, Plane{Vector<3>{1, -1, 0}, Point<3>{1, 2.5, 3}}),
              L"(0,0,1)@(0,0,5)(0,0,1)@(0,0,0)(0.707107,-0.707107,0)@(1,2.5,3)");
    EXPECT_TRUE((plane.distanceTo({1, 1, 2}) == -3 && plane.vectorTo({1, 1, 2}) == Vector<3>{0, 0, -3}));
    EXPECT_TRUE(plane.distanceFromOrigin() == 5 && turned.distanceFromOrigin() == -5);
    EXPECT_TRUE(turned.normal() == -plane.normal() && turned.pointOnPlane() == plane.pointOnPlane());
    EXPECT_TRUE((Plane{Vector<3>{}, Point<3>{}}.normal().isNaN()));
}

TEST(Plane, ThroughThreePointsSeesThemRunClockwiseAndMeetsLines) {
    Plane const plane{Point<3>{0, 0, 0}, Point<3>{1, 0, 0}, Point<3>{0, 1, 0}};
    EXPECT_TRUE((plane.normal() == Vector<3>{0, 0, -1} && plane.pointOnPlane() == Point<3>{1.0 / 3, 1.0 / 3, 0}));
    RandomGeometry random{7};
    for (int i = 0; i < 200; ++i) {
        Point<3> const a = random.point<3>(), b = random.point<3>(), c = random.point<3>(), q = random.point<3>();
        Plane const abc{a, b, c};
        double const slack = 1e-11 / cross(c - a, b - a).length();
        for (Point<3> const& corner : {a, b, c}) EXPECT_NEAR(abc.distanceTo(corner), 0, slack * 100);
        EXPECT_GT(dot(abc.normal(), cross(c - a, b - a)), 0);
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
    auto const line = [](Plane const& p, Plane const& q) {
        Line<3> const both = intersect(p, q);
        return written(both.direction(), both.point() + Vector<3>{});  // no zeros with a sign
    };
    Plane const z{Vector<3>{0, 0, 1}, Point<3>{8, 9, 1}};
    EXPECT_TRUE((intersect(z, z).point().isNaN() && intersect(z, z).direction().isNaN()));
    // A skew pair, worked by hand: 3x + 4z = 10 and y = 2 meet along (-4, 0, 3)/5, nearest the origin at (1.2, 2, 1.6).
    EXPECT_EQ(line({{3, 0, 4}, {2, 7, 1}}, {{0, 1, 0}, {5, 2, 5}}), L"(-0.8,0,0.6)(1.2,2,1.6)");
}

}
