#include "orn/geometry/IntegerPoint.h"

#include "orn/geometry/CoordinateList.h"

using ORN::putTuple;

// clang-format off
constinit IPoint<2> const IPoint<2>::m_origin{};
constinit IPoint<3> const IPoint<3>::m_origin{};
// clang-format on

std::wostream& operator<<(std::wostream& os, IVector<2> const& v) { return putTuple<int, 2>(os, v); }
std::wostream& operator<<(std::wostream& os, IVector<3> const& v) { return putTuple<int, 3>(os, v); }
