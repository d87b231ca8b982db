/// Planes, and where they meet lines and each other. Nothing tests for parallels: they give coordinates that are not
/// finite.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Line.h"
#include "orn/geometry/Point.h"

#include <iosfwd>

/// A point on the plane and the unit normal.
class ORN_API Plane {
public:
    constexpr Plane() noexcept = default;                           ///< through the origin, normal (0, 0, 1)
    Plane(Vector<3> const& normal, Point<3> const& point) noexcept  ///< normalises; a zero normal gives NaN
        : point_{point}, normal_{normal.unit()} {}

    /// Through three points: they run clockwise seen from the side to which the normal points. The point on the plane is
    /// their centroid.
    Plane(Point<3> const& a, Point<3> const& b, Point<3> const& c) noexcept;

    /// As given, the normal at unit length.
    /// @{
    constexpr Point<3> const& pointOnPlane() const noexcept { return point_; }
    constexpr Vector<3> const& normal() const noexcept { return normal_; }
    /// @}

    Plane operator-() const noexcept { return {-normal_, point_}; }  ///< the same points, the opposite normal

    /// Signed distances, along the normal, of the plane from the origin and of a point from the plane.
    /// @{
    constexpr double distanceFromOrigin() const noexcept {
        return point_.x() * normal_.x() + point_.y() * normal_.y() + point_.z() * normal_.z();
    }
    constexpr double distanceTo(Point<3> const& q) const noexcept { return dot(q - point_, normal_); }
    /// @}

    constexpr Vector<3> vectorTo(Point<3> const& q) const noexcept { return normal_ * distanceTo(q); }  ///< to q
    constexpr Point<3> project(Point<3> const& q) const noexcept { return q - vectorTo(q); }            ///< q's foot

private:
    Point<3> point_;
    Vector<3> normal_{0, 0, 1};
};

/// Written as (normal)@(point).
ORN_API std::wostream& operator<<(std::wostream& os, Plane const& plane);

namespace ORN {

/// The point common to a line and a plane.
/// @{
ORN_API Point<3> intersect(Line<3> const& line, Plane const& plane) noexcept;
ORN_API Point<3> intersect(Plane const& plane, Line<3> const& line) noexcept;
/// @}

}

/// The line common to two planes, directed along a × b of the normals; its point is the one nearest the origin.
ORN_API ORN::Line<3> intersect(Plane const& a, Plane const& b) noexcept;

namespace ORN {

// For programs in which another library has such a name, too.
using ::Plane;

}
