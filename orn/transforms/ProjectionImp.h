// Points through a homogeneous matrix.
#pragma once

#include "orn/geometry/Matrix.h"
#include "orn/geometry/Point.h"
#include "orn/geometry/Vector.h"

/// (p, 1)·h. The last component is negative for what lies in front of the eye.
inline Vector<3> homogeneousImage(Point<2> const& p, Matrix<3> const& h) noexcept {
    return Vector<3>{Vector<3>{p.x(), p.y(), 1.0}, h};
}
inline Vector<4> homogeneousImage(Point<3> const& p, Matrix<4> const& h) noexcept {
    return Vector<4>{Vector<4>{p.x(), p.y(), p.z(), 1.0}, h};
}

inline Point<2> projected(Vector<3> const& image) noexcept {
    return Point<2>{image.x() / image.z(), image.y() / image.z()};
}
inline Point<3> projected(Vector<4> const& image) noexcept {
    return Point<3>{image[0] / image[3], image[1] / image[3], image[2] / image[3]};
}
