/// Infinite lines of the plane and of space. Nothing tests for parallel lines: they give coordinates that are not finite,
/// or by rounding huge ones.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Point.h"

namespace ORN {

/// A unit direction and a point on the line. The direction is stored as given: intersections rely on its length of 1.
template <int N>
class Line {
    static_assert(N == 2 || N == 3, "lines have two or three dimensions");

public:
    /// Nothing is normalised.
    constexpr Line(Vector<N> const& direction, Point<N> const& point) noexcept : direction_{direction}, point_{point} {}

    /// The line through two points, directed from the first to the second; NaN when they are equal.
    static Line through(Point<N> const& from, Point<N> const& to) noexcept { return {(to - from).unit(), from}; }

    /// As given.
    /// @{
    constexpr Vector<N> const& direction() const noexcept { return direction_; }
    constexpr Point<N> const& point() const noexcept { return point_; }
    /// @}

private:
    Vector<N> direction_;
    Point<N> point_;
};

/// The point common to two lines of the plane.
ORN_API Point<2> intersect(Line<2> const& l1, Line<2> const& l2) noexcept;

/// The points at which two lines of space come closest: the first is on l1, the second on l2.
ORN_API void crossing(Point<3>& on1, Point<3>& on2, Line<3> const& l1, Line<3> const& l2) noexcept;

}
