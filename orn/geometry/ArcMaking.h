/// Arcs of the plane from what drawings have instead of a bulge, and what stands for an arc: points and a box.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Angle.h"
#include "orn/geometry/Arc.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Point.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace ORN {

/// The bulge of an arc that turns through an angle in radians, anticlockwise when it is positive. A bulge can express
/// angles between −2π and 2π; the whole circle has none.
ORN_API double bulgeOf(double sweep) noexcept;

/// About a centre, from one direction to another. Both directions are seen from the centre; the ends lie at the radius.
/// @{
/// Anticlockwise, by less than a whole turn: equal directions give a single point. Directions that rounding alone tells
/// apart give next to nothing or next to the whole circle; where the angle between them is known, give it.
ORN_API Arc<2> arcAbout(Point<2> const& centre, double radius, Angle const& from, Angle const& to) noexcept;
/// By an angle in radians between −2π and 2π, anticlockwise when it is positive.
ORN_API Arc<2> arcAbout(Point<2> const& centre, double radius, Angle const& from, double sweep) noexcept;
/// @}

/// The whole circle as two semicircles, anticlockwise from the point to the right of the centre.
ORN_API std::array<Arc<2>, 2> circleAbout(Point<2> const& centre, double radius) noexcept;

/// The arc from start through a point to end; straight when the point lies between them. The bulge is not finite when
/// the point lies in line with the ends but not between them, and NaN when the point is one of the ends.
ORN_API Arc<2> arcThrough(Point<2> const& start, Point<2> const& on, Point<2> const& end) noexcept;

/// The smallest box around an arc of any bulge. Of less than three quarters of a circle it is Arc<2>::extent() within
/// rounding.
ORN_API Extent<2> trueExtent(Arc<2> const& arc) noexcept;

/// The number of equal pieces in which an arc has to be cut so that their chords keep within the tolerance, which must
/// be positive, or std::logic_error is thrown. It is at least 1 and at most 65,536, however small the tolerance.
ORN_API int piecesWithin(Arc<2> const& arc, double tolerance);

/// Fills the points at equal distances along the arc. The first and the last are the arc's ends, bit for bit.
ORN_API void flatten(Arc<2> const& arc, std::span<Point<2>> points) noexcept;

/// Makes points those of a polyline that keeps within the tolerance of the arc, as piecesWithin counts them.
inline void flatten(Arc<2> const& arc, double tolerance, std::vector<Point<2>>& points) {
    points.resize(static_cast<std::size_t>(piecesWithin(arc, tolerance)) + 1);
    flatten(arc, std::span{points});
}

}
