/// The system's 2-D drawing library behind one interface: GDI+ on Windows, Cairo elsewhere.
#pragma once

#include "orn/colour/Colour.h"
#include "orn/colour/DIBitmap.h"
#include "orn/geometry/Point.h"
#include "orn/text/RawFile.h"

#include <memory>
#include <span>
#include <vector>

namespace drawing {

/// Rows of pixels in the memory of a top-down 32-bit bitmap: blue, green, red and a byte without meaning for each.
struct Band {
    unsigned char* pixels;  ///< of the first row
    int width;              ///< pixels in a row, and from row to row
    int top;                ///< the page's row that the first one is
    int height;             ///< number of rows
};

/// Draws on a band of the page. Points are in pixels of the page, y downwards; what lies outside the band is cut off. A
/// ContextGdiplus must be alive. One thread at a time; canvases over different rows do not share anything.
class Canvas {
public:
    static std::unique_ptr<Canvas> create(Band const& band, Colour const& paper);  ///< fills the band with the paper

    Canvas() = default;
    Canvas(Canvas const&) = delete;
    Canvas& operator=(Canvas const&) = delete;
    virtual ~Canvas() = default;

    /// An anti-aliased line with round joins and ends, drawn over what is there.
    virtual void stroke(std::span<Point<2> const> points, Colour const& colour, double width) = 0;

    /// Brings everything into the band's memory. To be called once, at the end.
    virtual void finish() = 0;
};

/// The same for a page of a PDF file, with a point for a pixel; the writer must outlive it. Throws ORN::OrnError on a
/// system that makes none.
std::unique_ptr<Canvas> pdfCanvas(ORN::RawWriter& file, int width, int height, Colour const& paper);

/// A top-down 32-bit bitmap as a PNG file. A ContextGdiplus must be alive.
std::vector<unsigned char> pngFile(DIBitmap const& bitmap);

}
