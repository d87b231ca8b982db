#include "orn/geometry/Line.h"

namespace ORN {

Point<2> intersect(Line<2> const& l1, Line<2> const& l2) noexcept {
    // Finds the point of l1 nearest to l2, where lines of the plane meet. With unit directions d1 and d2 and c = d1·d2, the
    // way from there to l2 is at a right angle to both, which gives t (1 − c²) = d1·w − c d2·w.
    Vector<2> const w = l2.point() - l1.point();
    double const c = dot(l1.direction(), l2.direction());
    double const t = (dot(l1.direction(), w) - c * dot(l2.direction(), w)) / (1 - c * c);
    return l1.point() + l1.direction() * t;
}

void crossing(Point<3>& on1, Point<3>& on2, Line<3> const& l1, Line<3> const& l2) noexcept {
    // The way between the two points is at a right angle to both directions: two linear equations for t1 and t2, solved by
    // Cramer's rule. Parallel lines have the determinant 1 − c² = 0.
    double const c = -dot(l1.direction(), l2.direction());
    double const e1 = dot(l1.direction(), l1.point() - l2.point());
    double const e2 = dot(l2.direction(), l2.point() - l1.point());
    double const t1 = (c * e2 - e1) / (1 - c * c);
    double const t2 = (c * e1 - e2) / (1 - c * c);
    on1 = l1.point() + l1.direction() * t1;
    on2 = l2.point() + l2.direction() * t2;
}

}
