#include "orn/geometry/IntegerExtent.h"

#include "orn/geometry/CoordinateList.h"

#include <ostream>

// clang-format off
template <> constinit IExtent<2> const IExtent<2>::m_everything{EverythingTag{}};
template <> constinit IExtent<2> const IExtent<2>::m_nothing{};
template <> constinit IExtent<3> const IExtent<3>::m_everything{EverythingTag{}};
template <> constinit IExtent<3> const IExtent<3>::m_nothing{};

template <> std::wostream& IExtent<2>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
template <> std::wostream& IExtent<3>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
// clang-format on
