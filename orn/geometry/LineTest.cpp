#include "orn/geometry/Line.h"

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

}
