#include "orn/geometry/Point.h"

#include "orn/geometry/CoordinateList.h"

using ORN::putTuple;

// clang-format off
constinit Point<1> const Point<1>::m_origin{};
constinit Point<2> const Point<2>::m_origin{};
constinit Point<3> const Point<3>::m_origin{};
// clang-format on

std::wostream& operator<<(std::wostream& os, Point<1> const& p) { return putTuple<double, 1>(os, p); }
std::wostream& operator<<(std::wostream& os, Point<2> const& p) { return putTuple<double, 2>(os, p); }
std::wostream& operator<<(std::wostream& os, Point<3> const& p) { return putTuple<double, 3>(os, p); }
