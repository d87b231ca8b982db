/// Circular arcs and straight segments of space: the bulge form and an axis.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Arc.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Plane.h"
#include "orn/geometry/Point.h"

#include <iosfwd>

namespace ORN {

/// An arc of the plane through its ends with the axis as unit normal. A positive bulge runs anticlockwise about the axis,
/// by the right-hand rule; with the axis (0, 0, 1) it is the arc of the plane. The axis must be at a right angle to the
/// chord. Degenerate arcs give coordinates that are not finite, never an exception.
template <>
class ORN_API Arc<3> {
public:
    constexpr Arc() noexcept = default;  ///< the origin, about (0, 0, 1)

    /// Normalises the axis, without a test for a zero one.
    Arc(Point<3> const& start, double bulge, Vector<3> const& axis, Point<3> const& end) noexcept
        : start_{start}, bulge_{bulge}, axis_{axis.unit()}, end_{end} {}

    /// Straight, about an axis at a right angle to the chord, in the y-z or the z-x plane; (0, 0, 1) for a chord that is
    /// zero, or so short (1e-162) that the squares of its components vanish. From 1e154 on these overflow, and the axis is
    /// zero; below 1e-154 its length is inexact.
    Arc(Point<3> const& start, Point<3> const& end) noexcept;

    /// As given; the axis at unit length.
    /// @{
    constexpr Point<3> const& start() const noexcept { return start_; }
    constexpr double bulge() const noexcept { return bulge_; }
    constexpr Vector<3> const& axis() const noexcept { return axis_; }
    constexpr Point<3> const& end() const noexcept { return end_; }
    /// @}

    Point<3> midpoint() const noexcept;  ///< halfway along the arc
    Point<3> centre() const noexcept;    ///< not finite for a straight segment
    double radius() const noexcept;      ///< not finite for a straight segment
    double length() const noexcept;      ///< along the arc
    double deviation() const noexcept;   ///< the sagitta: the greatest distance between arc and chord, not negative
    Plane plane() const noexcept;        ///< through the start

    /// The smallest box around the arc; it holds both ends exactly.
    Extent<3> extent() const noexcept;

    /// The two halves, split at the midpoint.
    void bisect(Arc& first, Arc& second) const noexcept;

    /// The point at a length along the arc from its start and the unit tangent there, in the direction of travel. Both
    /// are written in every case: beyond the ends the circle or line goes on. True when 0 ≤ distance / length() ≤ 1.
    bool measureOff(double distance, Point<3>& point, Vector<3>& tangent) const noexcept;

    friend constexpr bool operator==(Arc const&, Arc const&) noexcept = default;  ///< as kept, exactly; not by shape

private:
    Point<3> start_;
    double bulge_ = 0;
    Vector<3> axis_{0, 0, 1};
    Point<3> end_;
};

/// Written as (start)[bulge (axis)](end).
ORN_API std::wostream& operator<<(std::wostream& os, Arc<3> const& arc);

}
