#include "orn/geometry/Vector.h"

#include "orn/geometry/CoordinateList.h"

using ORN::putTuple;

int Vector<2>::quadrant() const noexcept {
    // Comparisons send NaN to the negative side and both zeros to the positive one.
    static constexpr int q[2][2] = {{3, 2}, {4, 1}};
    return q[x_ >= 0][y_ >= 0];
}

std::wostream& Vector<1>::putOn(std::wostream& os) const { return putTuple<double, 1>(os, *this); }
std::wostream& Vector<4>::putOn(std::wostream& os) const { return putTuple<double, 4>(os, *this); }

std::wostream& operator<<(std::wostream& os, Vector<2> const& v) { return putTuple<double, 2>(os, v); }
std::wostream& operator<<(std::wostream& os, Vector<3> const& v) { return putTuple<double, 3>(os, v); }
