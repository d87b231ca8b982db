#include "orn/geometry/IntegerExtent.h"

#include "orn/geometry/CoordinateList.h"

#include <ostream>

// clang-format off
constinit IExtent<2> const IExtent<2>::m_everything{EverythingTag{}};
constinit IExtent<2> const IExtent<2>::m_nothing{};
constinit IExtent<3> const IExtent<3>::m_everything{EverythingTag{}};
constinit IExtent<3> const IExtent<3>::m_nothing{};
// clang-format on

std::wostream& IExtent<2>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
std::wostream& IExtent<3>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
