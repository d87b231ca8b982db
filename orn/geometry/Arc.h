/// Circular arcs and straight segments of the plane, in bulge form.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Point.h"

#include <iosfwd>

namespace ORN {

/// A circular arc: Arc<2> of the plane, Arc<3> of space.
template <int N>
class Arc;

/// Two end points and the bulge, the tangent of a quarter of the included angle: 0 is a straight segment, ±1 a
/// semicircle. A positive bulge runs anticlockwise from start to end and lies on the right of the chord. Degenerate arcs
/// give coordinates that are not finite, never an exception.
template <>
class ORN_API Arc<2> {
public:
    constexpr Arc() noexcept = default;  ///< the origin
    /// Start, bulge and end are kept as given.
    constexpr Arc(Point<2> const& start, double bulge, Point<2> const& end) noexcept
        : start_{start}, bulge_{bulge}, end_{end} {}
    constexpr Arc(Point<2> const& start, Point<2> const& end) noexcept : start_{start}, end_{end} {}  ///< straight

    /// As given; the bulge is 0 where none was.
    /// @{
    constexpr Point<2> const& start() const noexcept { return start_; }
    constexpr double bulge() const noexcept { return bulge_; }
    constexpr Point<2> const& end() const noexcept { return end_; }
    /// @}

    Point<2> midpoint() const noexcept;  ///< halfway along the arc
    Point<2> centre() const noexcept;    ///< not finite for a straight segment
    double radius() const noexcept;      ///< not finite for a straight segment
    double length() const noexcept;      ///< along the arc
    double deviation() const noexcept;   ///< the sagitta: the greatest distance between arc and chord, not negative

    /// The smallest box around an arc of less than three quarters of a circle (a bulge of tan 67.5°, 2.414). One that turns
    /// further and has both ends in one quadrant about the centre gets the box of its ends alone: see trueExtent. At three
    /// quarters itself, with ends on the axes through the centre, the rounding of the centre decides.
    Extent<2> extent() const noexcept;

    /// The point at a length along the arc from its start and the unit tangent there, in the direction of travel. Both
    /// are written in every case: beyond the ends the circle or line goes on. True when 0 ≤ distance / length() ≤ 1.
    bool measureOff(double distance, Point<2>& point, Vector<2>& tangent) const noexcept;

    friend constexpr bool operator==(Arc const&, Arc const&) noexcept = default;  ///< as kept, exactly; not by shape

private:
    Point<2> start_;
    double bulge_ = 0;
    Point<2> end_;
};

/// Written as (start)[bulge](end).
ORN_API std::wostream& operator<<(std::wostream& os, Arc<2> const& arc);

}
