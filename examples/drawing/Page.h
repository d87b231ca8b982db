/// Where a drawing lies on a page of pixels.
#pragma once

#include "drawing/Drawing.h"

#include "orn/transforms/AffineTransform.h"

#include <memory>

namespace drawing {

/// How the drawing is turned before it is fitted into the page: scaled along its axes, then mirrored left to right,
/// then rotated anticlockwise.
struct View {
    double scaleX = 1, scaleY = 1;
    bool mirrored = false;
    double degrees = 0;
};

struct PageSize {
    int width = 1200, height = 900;  ///< in pixels
};

/// The largest similar picture of a drawing in the middle of a page, with a margin of 4 % of each side. The drawing's y
/// runs upwards; pixels count from the top left corner, y downwards.
class Page {
public:
    /// Throws ORN::OrnError when no such picture exists: the drawing is larger than what numbers hold.
    Page(Drawing const& drawing, PageSize size, View const& view);

    PageSize size() const noexcept { return size_; }
    AffineTransform<2> const& transform() const noexcept { return *transform_; }  ///< from the drawing to pixels
    double lineWidth() const noexcept;                                            ///< in pixels

private:
    PageSize size_;
    std::unique_ptr<AffineTransform<2>> transform_;
};

}
