#include "orn/geometry/Plane.h"

#include <ostream>

Plane::Plane(Point<3> const& a, Point<3> const& b, Point<3> const& c) noexcept
    : point_{(a.x() + b.x() + c.x()) / 3, (a.y() + b.y() + c.y()) / 3, (a.z() + b.z() + c.z()) / 3} {
    Vector<3> const ga = a - point_, gb = b - point_, gc = c - point_;
    normal_ = (cross(ga, gc) + cross(gc, gb) + cross(gb, ga)).unit();
}

std::wostream& operator<<(std::wostream& os, Plane const& plane) {
    return os << plane.normal() << L'@' << plane.pointOnPlane();
}

namespace ORN {

Point<3> intersect(Line<3> const& line, Plane const& plane) noexcept {
    Vector<3> const& n = plane.normal();
    double const t = -dot(line.point() - plane.pointOnPlane(), n) / dot(line.direction(), n);
    return line.point() + line.direction() * t;
}

Point<3> intersect(Plane const& plane, Line<3> const& line) noexcept { return intersect(line, plane); }

}

ORN::Line<3> intersect(Plane const& a, Plane const& b) noexcept {
    Vector<3> const along = cross(a.normal(), b.normal());
    double const ha = -a.distanceFromOrigin();
    double const hb = -b.distanceFromOrigin();
    Vector<3> const u = along / along.lengthSquared();
    Vector<3> const nearest = cross(a.normal() * hb - b.normal() * ha, u);
    return {along.unit(), Point<3>{nearest.x(), nearest.y(), nearest.z()}};
}
