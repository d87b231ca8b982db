#include "orn/geometry/EllipticArc.h"

#include "tests/support/Geometry.h"

#include <stdexcept>

namespace {

using ORN::EllipticArc;
using P = Point<2>;
using V = Vector<2>;

TEST(EllipticArc, HasItsAxesBoxAndPieces) {
    RandomGeometry random{81};
    std::vector<P> points;
    for (int round = 0; round < 300; ++round) {
        P const centre = random.point<2>();
        V const u = random.vector<2>(), v = random.vector<2>();
        double const first = random.number(-20, 20), sweep = random.number(-6.2, 6.2), size = u.length() + v.length();
        auto const arc = EllipticArc::conjugate(centre, u, v, first, sweep);
        EXPECT_NEAR(dot(arc.major, arc.minor), 0, 1e-14 * size * size);
        EXPECT_GE(arc.major.length(), arc.minor.length() - 1e-14 * size);

        // The same points at the same parameters as by the conjugate diameters; the box is theirs.
        Extent<2> seen;
        constexpr int steps = 2000;
        for (int i = 0; i <= steps; ++i) {
            double const part = 1.0 * i / steps, s = first + sweep * part;
            P const on = centre + (u * std::cos(s) + v * std::sin(s));
            expectNear(arc.at(arc.from + sweep * part), on, 1e-13 * size);
            seen += on;
        }
        double const step = sweep / steps;
        expectNear(arc.extent().lo(), seen.lo(), size * step * step);
        expectNear(arc.extent().hi(), seen.hi(), size * step * step);

        // Chords of a flattened one: the middle of the arc between them is the farthest point.
        double const tolerance = size * std::pow(10, random.number(-6, -1));
        ORN::flatten(arc, tolerance, points);
        double const pieces = static_cast<double>(points.size()) - 1;
        EXPECT_TRUE(points.front() == arc.start());
        expectNear(points.back(), arc.end(), 1e-13 * size);
        double farthest = 0;
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
            P const between = arc.at(arc.from + sweep * (static_cast<double>(i) + 0.5) / pieces);
            V const chord = points[i + 1] - points[i];
            farthest = std::max(farthest, std::fabs(cross(chord, between - points[i])) / chord.length());
        }
        EXPECT_LE(farthest, tolerance);
        // Half a turn passes an end of the major axis, where the chords of a rounder ellipse are farthest off.
        bool const passesEnd = std::fabs(sweep) > 3.3 && arc.minor.length() > arc.major.length() / 2;
        EXPECT_TRUE(pieces < 20 || !passesEnd || farthest > tolerance / 2) << "more pieces than it takes";
    }
    EllipticArc const quarter{P{1, 2}, V{3, 0}, V{0, 1}, 0, Angle::pi / 2};
    EXPECT_EQ(written(quarter.start(), quarter.extent().lo(), quarter.extent().hi()), L"(4,2)(1,2)(4,3)");
    EXPECT_THROW(ORN::piecesWithin(quarter, 0), std::logic_error);
    EXPECT_EQ(ORN::piecesWithin(quarter, 5e-324), 65536);
}

}
