/// Files of the system's 2-D drawing library: GDI+ on Windows, Cairo elsewhere.
#pragma once

#include "orn/colour/Colour.h"
#include "orn/colour/DIBitmap.h"
#include "orn/geometry/Point.h"
#include "orn/text/RawFile.h"

#include <memory>
#include <span>
#include <vector>

namespace drawing {

/// Draws on a page. Points are in pixels of the page, y downwards. One thread at a time.
class Canvas {
public:
    Canvas() = default;
    Canvas(Canvas const&) = delete;
    Canvas& operator=(Canvas const&) = delete;
    virtual ~Canvas() = default;

    /// A line with round joins and ends, drawn over what is there.
    virtual void stroke(std::span<Point<2> const> points, Colour const& colour, double width) = 0;

    /// Completes the file. The caller calls this once, after the last stroke.
    virtual void finish() = 0;
};

/// A page of a PDF file; a pixel becomes a point (1/72 inch). The writer must outlive the canvas. Throws ORN::OrnError on
/// Windows, which makes no PDF files.
std::unique_ptr<Canvas> pdfCanvas(ORN::RawWriter& file, int width, int height, Colour const& paper);

/// A top-down 32-bit bitmap as a PNG file. A ContextGdiplus must be alive.
std::vector<unsigned char> pngFile(DIBitmap const& bitmap);

}
