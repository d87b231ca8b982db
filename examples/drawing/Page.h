/// Where a drawing lies on a page of pixels.
#pragma once

#include "drawing/Drawing.h"

#include "orn/transforms/AffineTransform.h"

#include <cstdint>
#include <memory>

namespace drawing {

/// How a fitted picture is enlarged about the middle of the page, and then moved.
struct Closeup {
    double zoom = 1;
    Vector<2> shift{};  ///< in pixels
};

/// How the drawing is turned before it is fitted into the page: scaled along its axes, then mirrored left to right,
/// then rotated anticlockwise.
struct View {
    double scaleX = 1, scaleY = 1;
    bool mirrored = false;
    double degrees = 0;
    std::uint32_t paper = 0xFFFFFF;  ///< what it is drawn on
    Closeup closeup{};               ///< where it lies beside the place that fits
};

/// Black, or white where the paper is dark.
constexpr std::uint32_t inkOn(std::uint32_t paper) noexcept {
    std::uint32_t const red = paper >> 16, green = paper >> 8 & 0xFF, blue = paper & 0xFF;
    return 3 * red + 6 * green + blue < 10 * 128 ? 0xFFFFFF : 0;
}

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
    std::uint32_t paper() const noexcept { return paper_; }                       ///< 0xRRGGBB
    AffineTransform<2> const& transform() const noexcept { return *transform_; }  ///< from the drawing to pixels
    double lineWidth() const noexcept;                                            ///< in pixels

private:
    PageSize size_;
    std::uint32_t paper_;
    std::unique_ptr<AffineTransform<2>> transform_;
};

}
