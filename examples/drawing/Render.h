/// The picture of a drawing, whole or band by band.
#pragma once

#include "drawing/Canvas.h"
#include "drawing/Drawing.h"
#include "drawing/Page.h"

namespace drawing {

/// Draws the rows of the page that the band holds. Any band gets the pixels that these rows have in the whole picture,
/// so a caller may stop between bands, or draw them in any order and on several threads.
void renderBand(Drawing const& drawing, Page const& page, Band const& band);

/// The page as a PDF file, as pdfCanvas makes it.
void writePdf(Drawing const& drawing, Page const& page, ORN::RawWriter& file);

/// The whole page, as a top-down 32-bit bitmap. The byte beside each pixel's colours is 255.
DIBitmap renderPage(Drawing const& drawing, Page const& page);

}
