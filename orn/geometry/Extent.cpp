#include "orn/geometry/Extent.h"

#include "orn/geometry/CoordinateList.h"

#include <ostream>

// clang-format off
template <> constinit Extent<1> const Extent<1>::m_everything{EverythingTag{}};
template <> constinit Extent<1> const Extent<1>::m_nothing{};
template <> constinit Extent<2> const Extent<2>::m_everything{EverythingTag{}};
template <> constinit Extent<2> const Extent<2>::m_nothing{};
template <> constinit Extent<3> const Extent<3>::m_everything{EverythingTag{}};
template <> constinit Extent<3> const Extent<3>::m_nothing{};

template <> std::wostream& Extent<1>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
template <> std::wostream& Extent<2>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
template <> std::wostream& Extent<3>::putOn(std::wostream& os) const { return ORN::putBounds(os, box_); }
// clang-format on
