#include "orn/geometry/Plane.h"

#include <ostream>

Plane::Plane(Point<3> const& a, Point<3> const& b, Point<3> const& c) noexcept
    : point_{(a.x() + b.x() + c.x()) / 3, (a.y() + b.y() + c.y()) / 3, (a.z() + b.z() + c.z()) / 3} {
    // Each product is twice the area of the triangle between the centroid and a side; their order turns the normal to the
    // side from which the points run clockwise.
    Vector<3> const ga = a - point_, gb = b - point_, gc = c - point_;
    normal_ = (cross(ga, gc) + cross(gc, gb) + cross(gb, ga)).unit();
}

std::wostream& operator<<(std::wostream& os, Plane const& plane) {
    return os << plane.normal() << L'@' << plane.pointOnPlane();
}

namespace ORN {

Point<3> intersect(Line<3> const& line, Plane const& plane) noexcept {
    Vector<3> const& n = plane.normal();
    // Going t along the line makes up for the height of its point above the plane. A parallel line divides by 0.
    double const t = -dot(line.point() - plane.pointOnPlane(), n) / dot(line.direction(), n);
    return line.point() + line.direction() * t;
}

Point<3> intersect(Plane const& plane, Line<3> const& line) noexcept { return intersect(line, plane); }

}

ORN::Line<3> intersect(Plane const& a, Plane const& b) noexcept {
    // The planes are n·p = −h. The common line comes nearest to the origin at (h_b n_a − h_a n_b) × along / |along|².
    Vector<3> const along = cross(a.normal(), b.normal());
    double const ha = -a.distanceFromOrigin();
    double const hb = -b.distanceFromOrigin();
    Vector<3> const u = along / along.lengthSquared();
    Vector<3> const nearest = cross(a.normal() * hb - b.normal() * ha, u);
    return {along.unit(), Point<3>{nearest.x(), nearest.y(), nearest.z()}};
}
