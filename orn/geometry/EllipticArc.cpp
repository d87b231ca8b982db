#include "orn/geometry/EllipticArc.h"

#include "orn/geometry/Angle.h"
#include "orn/geometry/Elementary.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ORN {

// The half diameters at s and a quarter turn on are at a right angle where (v·v − u·u) sin 2s + 2 u·v cos 2s is 0.
EllipticArc EllipticArc::conjugate(Point<2> const& centre, Vector<2> const& u, Vector<2> const& v, double first,
                                   double sweep) noexcept {
    double const s = arcTangent(2 * dot(u, v), dot(u, u) - dot(v, v)) / 2;
    auto const [sine, cosine] = sineAndCosine(s);
    return {centre, u * cosine + v * sine, v * cosine - u * sine, first - s, sweep};
}

Point<2> EllipticArc::at(double t) const noexcept {
    auto const [sine, cosine] = sineAndCosine(t);
    return centre + (major * cosine + minor * sine);
}

// A coordinate is a wave with its extremes half a turn apart. Each is reached when it lies within the sweep, whole turns
// left aside.
Extent<2> EllipticArc::extent() const noexcept {
    Extent<2> box{start(), end()};
    double const low = std::min(from, from + sweep), turn = 2 * Angle::pi;
    for (int i = 0; i < 2; ++i) {
        double const highest = arcTangent(minor[i], major[i]);
        for (double const extreme : {highest, highest + Angle::pi}) {
            double const first = extreme + std::ceil((low - extreme) / turn) * turn;
            if (first <= low + std::fabs(sweep)) box += at(first);
        }
    }
    return box;
}

// A piece of the angle w on the unit circle departs from its chord by less than w² / 8, and its image by at most the major
// half axis times as much.
int piecesWithin(EllipticArc const& arc, double tolerance) {
    if (!(tolerance > 0)) throw std::logic_error{"flattening an arc: the tolerance is not positive"};
    double const longer = std::max(arc.major.length(), arc.minor.length());
    double const pieces = std::ceil(std::fabs(arc.sweep) * std::sqrt(longer / (8 * tolerance)));
    return pieces > 1 ? static_cast<int>(std::min(pieces, 65536.0)) : 1;
}

void flatten(EllipticArc const& arc, std::span<Point<2>> points) noexcept {
    double const last = static_cast<double>(points.size()) - 1;
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = arc.at(i == 0 ? arc.from : arc.from + arc.sweep * (static_cast<double>(i) / last));
}

}
