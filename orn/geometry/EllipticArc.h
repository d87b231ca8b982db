/// Arcs of ellipses in the plane: what an unequal scaling makes of circular ones.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Point.h"

#include <cstddef>
#include <span>
#include <vector>

namespace ORN {

/// The points centre + major·cos t + minor·sin t, with t in radians from `from` to from + sweep; a negative sweep runs
/// backwards. The two are the half axes, at a right angle and major the longer one, in what conjugate() makes.
struct EllipticArc {
    Point<2> centre;   ///< of the ellipse
    Vector<2> major;   ///< to its point at t = 0
    Vector<2> minor;   ///< to its point at a quarter turn
    double from = 0;   ///< in radians of t
    double sweep = 0;  ///< in radians, at most a whole turn either way

    /// From two conjugate half diameters: of the points centre + u·cos s + v·sin s those from s = first on.
    ORN_API static EllipticArc conjugate(Point<2> const& centre, Vector<2> const& u, Vector<2> const& v, double first,
                                         double sweep) noexcept;

    ORN_API Point<2> at(double t) const noexcept;               ///< the ellipse's point at t
    Point<2> start() const noexcept { return at(from); }        ///< at `from`
    Point<2> end() const noexcept { return at(from + sweep); }  ///< at from + sweep

    /// The smallest box. Where `from` is beyond 1e8, doubles are too far apart for t: the box may lack 1e-10 of the longer
    /// half axis at 1e10, and 1e-6 at 1e12.
    ORN_API Extent<2> extent() const noexcept;
};

/// As for circular arcs: the number of pieces, at equal steps of t, whose chords keep within the tolerance, from 1 to
/// 65,536. Throws std::logic_error when the tolerance is not positive. It counts on half axes at a right angle: chords
/// between other half diameters keep within 1.42 times the tolerance.
ORN_API int piecesWithin(EllipticArc const& arc, double tolerance);

/// Fills the points at equal steps of t, from start to end.
ORN_API void flatten(EllipticArc const& arc, std::span<Point<2>> points) noexcept;

/// Makes points those of a polyline that keeps within the tolerance of the arc, as piecesWithin counts them.
inline void flatten(EllipticArc const& arc, double tolerance, std::vector<Point<2>>& points) {
    points.resize(static_cast<std::size_t>(piecesWithin(arc, tolerance)) + 1);
    flatten(arc, std::span{points});
}

}
