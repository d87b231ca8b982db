/// A picture that is drawn band by band.
#pragma once

#include "view/Sheet.h"

#include "drawing/Page.h"
#include "drawing/Render.h"

#include "orn/colour/DIBitmap.h"

#include <optional>

namespace view {

/// What a picture is to show.
struct Request {
    drawing::PageSize size;
    drawing::Closeup closeup;
    LayerSet hidden;
};

/// A page whose rows are drawn in bands, from the top. The pixels of rows that are drawn do not change any more: one
/// thread may read them while another draws those below.
class Picture {
public:
    /// The page is fitted to all layers, hidden ones too, so that nothing moves when a layer is hidden. The sheet must
    /// outlive the picture. Throws what Page throws.
    Picture(Sheet const& sheet, Request const& request);

    Picture(Picture const&) = delete;
    Picture& operator=(Picture const&) = delete;

    drawing::PageSize size() const noexcept { return page_.size(); }
    DIBitmap const& bitmap() const noexcept { return bitmap_; }

    /// Draws the band that begins with this row, and returns the row behind it.
    int drawBand(int top);

private:
    std::optional<drawing::Drawing> rest_;  ///< the part on the visible layers, when some are hidden
    drawing::Page page_;
    drawing::Renderer renderer_;
    DIBitmap bitmap_;
};

}
