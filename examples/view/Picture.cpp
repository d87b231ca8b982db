#include "view/Picture.h"

#include "drawing/Render.h"

#include <algorithm>
#include <cstddef>

namespace view {

Picture::Picture(Sheet const& sheet, Request const& request)
    : sheet_{&sheet},
      page_{sheet.drawing(), request.size, {.closeup = request.closeup}},
      bitmap_{static_cast<unsigned int>(request.size.width), -request.size.height, 32, 0} {
    auto const hidden = [&](Quark layer) { return request.hidden.contains(layer); };
    if (std::any_of(sheet.layers().begin(), sheet.layers().end(), hidden)) rest_ = sheet.without(request.hidden);
}

int Picture::drawBand(int top) {
    auto const [width, height] = size();
    // Small enough to be stopped soon, large enough to be worth a walk over the drawing.
    int const rows = std::max((1 << 13) / width, 4);
    int const bottom = std::min(top + rows, height);
    unsigned char* const pixels = bitmap_.bits() + std::ptrdiff_t{width} * top * 4;
    drawing::renderBand(visible(), page_, {pixels, width, top, bottom - top});
    return bottom;
}

}
