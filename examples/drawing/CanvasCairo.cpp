#include "drawing/Canvas.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <cairo-pdf.h>
#include <cairo.h>

#include <new>
#include <utility>

namespace drawing {

namespace {

void check(cairo_status_t status) {
    if (status == CAIRO_STATUS_NO_MEMORY) throw std::bad_alloc{};
    if (status != CAIRO_STATUS_SUCCESS) throw ORN::OrnError{getWCS(cairo_status_to_string(status))};
}

struct Release {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};

using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Context = std::unique_ptr<cairo_t, Release>;

/// The surface copies nothing: the pixels must outlive it. Rows of four bytes a pixel have the stride that Cairo wants.
Surface surfaceOver(unsigned char* pixels, int width, int height) {
    // Cairo never returns null: a failure gives an object in an error state, which has to be released, too.
    Surface surface{cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, width, height, width * 4)};
    check(cairo_surface_status(surface.get()));
    return surface;
}

class CairoCanvas final : public Canvas {
public:
    CairoCanvas(Surface surface, Colour const& paper)
        : surface_{std::move(surface)}, context_{cairo_create(surface_.get())} {
        check(cairo_status(context_.get()));
        cairo_set_source_rgb(context_.get(), paper.r(), paper.g(), paper.b());
        cairo_paint(context_.get());
        cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(context_.get(), CAIRO_LINE_CAP_ROUND);
    }

    void stroke(std::span<Point<2> const> points, Colour const& colour, double width) override {
        cairo_t* const context = context_.get();
        // The first point begins the path, because cairo_stroke leaves none behind. A dot comes as two equal points:
        // Cairo draws round ends for these, and nothing for a single one.
        for (Point<2> const& p : points) cairo_line_to(context, p.x(), p.y());
        cairo_set_source_rgb(context, colour.r(), colour.g(), colour.b());
        cairo_set_line_width(context, width);
        cairo_stroke(context);
    }

    void finish() override {
        // An object of Cairo keeps its first error and ignores all later calls, so one look at the end is enough.
        check(cairo_status(context_.get()));
        cairo_surface_finish(surface_.get());
        check(cairo_surface_status(surface_.get()));
    }

private:
    Surface surface_;
    Context context_;
};

/// Cairo is C, so no exception may pass through it. The writer's own message is lost; finish() throws that of Cairo.
cairo_status_t writeTo(void* closure, unsigned char const* bytes, unsigned int count) {
    try {
        static_cast<ORN::RawWriter*>(closure)->write(bytes, count);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        return CAIRO_STATUS_WRITE_ERROR;
    }
}

cairo_status_t append(void* closure, unsigned char const* bytes, unsigned int count) {
    auto* const file = static_cast<std::vector<unsigned char>*>(closure);
    try {
        file->insert(file->end(), bytes, bytes + count);
        return CAIRO_STATUS_SUCCESS;
    } catch (std::bad_alloc const&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

}

std::unique_ptr<Canvas> pdfCanvas(ORN::RawWriter& file, int width, int height, Colour const& paper) {
    Surface surface{cairo_pdf_surface_create_for_stream(writeTo, &file, width, height)};
    check(cairo_surface_status(surface.get()));
    return std::make_unique<CairoCanvas>(std::move(surface), paper);
}

std::vector<unsigned char> pngFile(DIBitmap const& bitmap) {
    BITMAPINFOHEADER const& header = bitmap.header()->bmiHeader;
    auto* const pixels = const_cast<unsigned char*>(bitmap.bits());  // only read
    // The height is negative in the header of a top-down bitmap.
    Surface const surface = surfaceOver(pixels, header.biWidth, -header.biHeight);
    std::vector<unsigned char> bytes;
    check(cairo_surface_write_to_png_stream(surface.get(), append, &bytes));
    return bytes;
}

}
