#include "view/Picture.h"

#include <algorithm>
#include <cstddef>

namespace view {

namespace {

std::optional<drawing::Drawing> shownPart(Sheet const& sheet, LayerSet const& hidden) {
    auto const isHidden = [&](Quark layer) { return hidden.contains(layer); };
    // No drawing means the whole sheet, which then need not be copied.
    if (std::none_of(sheet.layers().begin(), sheet.layers().end(), isHidden)) return {};
    return sheet.without(hidden);
}

}

Picture::Picture(Sheet const& sheet, Request const& request)
    : rest_{shownPart(sheet, request.hidden)},
      page_{sheet.drawing(), request.size, {.closeup = request.closeup}},
      renderer_{rest_ ? *rest_ : sheet.drawing(), page_},
      bitmap_{static_cast<unsigned int>(request.size.width), -request.size.height, 32, 0} {}

int Picture::drawBand(int top) {
    auto const [width, height] = size();
    // Small enough to be stopped soon, large enough to be worth a walk over the drawing.
    int const rows = std::max((1 << 13) / width, 4);
    int const bottom = std::min(top + rows, height);
    unsigned char* const pixels = bitmap_.bits() + std::ptrdiff_t{width} * top * 4;
    renderer_.draw({pixels, width, top, bottom - top});
    return bottom;
}

}
