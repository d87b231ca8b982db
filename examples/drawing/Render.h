/// The picture of a drawing, whole or band by band.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/Page.h"
#include "drawing/Strokes.h"

#include "orn/colour/DIBitmap.h"
#include "orn/text/RawFile.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace drawing {

/// Draws a page band by band. Any band gets the pixels that these rows have in the whole picture, so a caller may stop
/// between bands, or draw them in any order and on several threads. The drawing and the page must outlive it.
class Renderer {
public:
    Renderer(Drawing const& drawing, Page const& page);

    /// Fills the band with the paper and draws what reaches into it. The byte beside each pixel's colours becomes 255.
    void draw(Band const& band) const;

private:
    /// Rows between which an entity lies, or more.
    struct Reach {
        float top, bottom;
    };

    Drawing const* drawing_;
    Page const* page_;
    std::vector<Reach> reaches_;
};

/// The page as a PDF file, as pdfCanvas makes it.
void writePdf(Drawing const& drawing, Page const& page, ORN::RawWriter& file);

/// The whole page as a top-down 32-bit bitmap. As many threads draw it as there are processors. The calling thread is one
/// of them; after each of its bands it calls `progress` with the share of the rows that are drawn.
DIBitmap renderPage(Drawing const& drawing, Page const& page, std::function<void(int perCent)> const& progress = {});

}
