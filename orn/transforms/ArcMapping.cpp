#include "orn/transforms/ArcMapping.h"

#include "orn/geometry/Elementary.h"

namespace ORN {

namespace {

// A similarity keeps all angles, and so the bulge; a mirror turns the direction of travel.
template <int N>
double mappedBulge(Arc<N> const& arc, UniformTransform<N> const& t) {
    return t.mirroring() ? -arc.bulge() : arc.bulge();
}

}

Arc<2> operator*(Arc<2> const& arc, UniformTransform<2> const& t) {
    return {arc.start() * t, mappedBulge(arc, t), arc.end() * t};
}

Arc<2> operator/(Arc<2> const& arc, UniformTransform<2> const& t) {
    return {arc.start() / t, mappedBulge(arc, t), arc.end() / t};
}

Arc<3> operator*(Arc<3> const& arc, UniformTransform<3> const& t) {
    return {arc.start() * t, mappedBulge(arc, t), arc.axis() * t, arc.end() * t};
}

Arc<3> operator/(Arc<3> const& arc, UniformTransform<3> const& t) {
    return {arc.start() / t, mappedBulge(arc, t), arc.axis() / t, arc.end() / t};
}

// The circle's arms to the start and a quarter turn on are mapped to a pair of conjugate half diameters of the ellipse.
EllipticArc ellipticArc(Arc<2> const& arc, AffineTransform<2> const& t) {
    Point<2> const centre = arc.centre();
    Vector<2> const arm = arc.start() - centre;
    // A bulge is the tangent of a quarter of the angle that the arc includes.
    return EllipticArc::conjugate(centre * t, arm * t, arm.perpendicular() * t, 0, 4 * arcTangent(arc.bulge()));
}

EllipticArc operator*(EllipticArc const& arc, AffineTransform<2> const& t) {
    // The images of the half axes are conjugate half diameters. The images of the points keep their parameters to them.
    return EllipticArc::conjugate(arc.centre * t, arc.major * t, arc.minor * t, arc.from, arc.sweep);
}

}
