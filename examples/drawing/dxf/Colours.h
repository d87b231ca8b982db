/// The colours of DXF.
#pragma once

#include <cstdint>

namespace drawing::dxf {

/// 0xRRGGBB of the colour index 1 to 255; `ink` for 7, which stands out from whatever paper there is.
std::uint32_t colourOfIndex(int index, std::uint32_t ink);

}
