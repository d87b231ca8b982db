#include "orn/geometry/ArcMaking.h"

#include "tests/support/ExactArc.h"
#include "tests/support/Geometry.h"

#include <stdexcept>

namespace {

using Arc = ORN::Arc<2>;
using P = Point<2>;
using V = Vector<2>;

TEST(ArcMaking, AboutACentre) {
    struct {
        double from, to, bulge;
    } const cases[] = {{0, 90, 0.41421356237309505},   {0, 180, 1},
                       {90, 0, 2.4142135623730950},    {10, 10, 0},
                       {350, 10, 0.08748866352592400}, {30, 29.99, 22918.311790684935}};
    P const centre{3, -4};
    for (auto const& c : cases) {
        Angle const from = Angle::degrees(c.from), to = Angle::degrees(c.to);
        Arc const arc = ORN::arcAbout(centre, 5, from, to);
        EXPECT_NEAR(arc.bulge(), c.bulge, 1e-15 * (1 + c.bulge * c.bulge)) << c.from << ' ' << c.to;
        expectNear(arc.start(), centre + V{5, from}, 1e-15);
        expectNear(arc.end(), centre + V{5, to}, 1e-15);

        // By the angle, and the other way round: the rest of the circle.
        double const sweep = (c.to - c.from + (c.to < c.from ? 360 : 0)) * Angle::pi / 180;
        Arc const turned = ORN::arcAbout(centre, 5, from, sweep);
        EXPECT_NEAR(turned.bulge(), c.bulge, 1e-15 * (1 + c.bulge * c.bulge));
        expectNear(turned.end(), arc.end(), 1e-14);
        EXPECT_LE(ORN::arcAbout(centre, 5, from, sweep - 2 * Angle::pi).bulge(), 0);
    }
    auto const circle = ORN::circleAbout(centre, 5);
    EXPECT_EQ(written(circle[0], circle[1]), L"(8,-4)[1](-2,-4)(-2,-4)[1](8,-4)");
}

TEST(ArcMaking, ThroughAPoint) {
    double const infinity = std::numeric_limits<double>::infinity();
    struct {
        P on;
        double bulge;
    } const cases[] = {{{1, -1}, 1}, {{1, 1}, -1}, {{1, 0}, 0}, {{2, -2}, 1 + std::sqrt(2)}, {{3, 0}, infinity}};
    for (auto const& c : cases) {
        double const bulge = ORN::arcThrough({0, 0}, c.on, {2, 0}).bulge();
        EXPECT_TRUE(std::fabs(bulge - c.bulge) < 1e-15 || std::fabs(bulge) == c.bulge) << bulge;
    }
    EXPECT_TRUE(std::isnan(ORN::arcThrough({0, 0}, {2, 0}, {2, 0}).bulge()));

    RandomGeometry random{71};
    for (int i = 0; i < 500; ++i) {
        Arc const arc{random.point<2>(), random.magnitude(-3, 2), random.point<2>()};
        P const through = ExactArc{arc}.rounded<2>(random.number(0.1, 0.9));
        double const scale = 1e-14 / (arc.end() - arc.start()).length() * (20 + arc.radius());
        EXPECT_NEAR(ORN::arcThrough(arc.start(), through, arc.end()).bulge(), arc.bulge(),
                    scale * (1 + arc.bulge() * arc.bulge()));
    }
}

TEST(ArcMaking, TrueExtentIsTheBoxOfEveryBulge) {
    RandomGeometry random{72};
    forEveryBulge(1e4, [&](double bulge) {
        for (int i = 0; i < 20; ++i) {
            Arc const arc{random.point<2>(), bulge, random.point<2>()};
            expectBoxed(arc, ORN::trueExtent(arc));
        }
    });
}

TEST(ArcMaking, FlattensWithinTheTolerance) {
    RandomGeometry random{73};
    std::vector<P> points(3);
    forEveryBulge(1e4, [&](double bulge) {
        Arc const arc{random.point<2>(), bulge, random.point<2>()};
        ExactArc const exact{arc};
        double const tolerance = exact.size() * std::pow(10, random.number(-7, 0));
        ORN::flatten(arc, tolerance, points);
        std::size_t const pieces = points.size() - 1;
        EXPECT_EQ(static_cast<int>(pieces), ORN::piecesWithin(arc, tolerance));
        EXPECT_TRUE(points.front() == arc.start() && points.back() == arc.end());
        for (std::size_t i = 0; i <= pieces; i += 1 + pieces / 100)
            EXPECT_LE(ExactArc::distance(points[i], exact.point(i / ExactArc::Number(pieces))), 1e-14 * exact.size());

        // The sagitta of a piece, and that of pieces twice as long.
        auto const sagitta = [&](double part) {
            double const angle = 4 * std::atan(std::fabs(bulge)), sine = std::sin(angle * part / 4);
            return angle < 1e-300 ? 0 : arc.length() / angle * 2 * sine * sine;
        };
        EXPECT_LE(sagitta(1.0 / static_cast<double>(pieces)), tolerance * (1 + 1e-12)) << bulge;
        EXPECT_TRUE(pieces == 1 || sagitta(2.0 / static_cast<double>(pieces)) > tolerance / 2) << bulge;
    });
    Arc const arc{P{0, 0}, 1, P{2, 0}};
    EXPECT_EQ(ORN::piecesWithin(arc, 5e-324), 65536);
    EXPECT_EQ(ORN::piecesWithin(Arc{}, 1e-3), 1);
    for (double const none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(ORN::piecesWithin(arc, none), std::logic_error);
}

}
