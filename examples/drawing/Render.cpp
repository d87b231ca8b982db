#include "drawing/Render.h"

#include "drawing/Flatten.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace drawing {

namespace {

// With the snapping below, a quarter of a pixel in all.
constexpr double flatness = 0.2;

// To a pixel. So fine that it does not show, and so coarse that moving a point to its band is exact: then every band
// gets the same shapes.
constexpr double gridSteps = 256;

Point<2> snapped(Point<2> const& p) {
    return {std::floor(p.x() * gridSteps + 0.5) / gridSteps, std::floor(p.y() * gridSteps + 0.5) / gridSteps};
}

Colour colourOf(std::uint32_t rgb) { return Colour::argb(0xFF000000 | rgb); }

/// Whether an arc can touch the rows at all: it keeps within a disc around the middle of its chord.
bool touches(ORN::Arc<2> const& arc, AffineTransform<2> const& transform, double stretch, double from, double to) {
    Vector<2> const chord = arc.end() - arc.start();
    double const reach = chord.length() * 0.5 * std::max(1.0, std::fabs(arc.bulge())) * stretch;
    double const y = ((arc.start() + chord * 0.5) * transform).y();
    return y + reach >= from && y - reach <= to;
}

}

void renderBand(Drawing const& drawing, Page const& page, Band const& band) {
    double const width = page.lineWidth();
    double const stretch = largestStretch(page.transform());
    double const from = band.top - width - 1, to = band.top + band.height + width + 1;

    std::unique_ptr<Canvas> const canvas = Canvas::create(band, colourOf(page.paper()));
    std::vector<Point<2>> points;
    for (Entity const& entity : drawing.entities()) {
        if (!touches(entity.arc, page.transform(), stretch, from, to)) continue;
        flatten(entity.arc, page.transform(), stretch, flatness, points);
        for (Point<2>& p : points) p = snapped(p);
        bool const dot = std::all_of(points.begin(), points.end(), [&](Point<2> const& p) { return p == points[0]; });
        if (dot) points.back() += Vector<2>{1 / gridSteps, 0};  // not every library draws a line without length
        canvas->stroke(points, colourOf(entity.rgb), width);
    }
    canvas->finish();
    for (std::ptrdiff_t i = 0, count = std::ptrdiff_t{band.width} * band.height; i < count; ++i) {
        band.pixels[i * 4 + 3] = 0xFF;
    }
}

void writePdf(Drawing const& drawing, Page const& page, ORN::RawWriter& file) {
    auto const [width, height] = page.size();
    std::unique_ptr<Canvas> const canvas = pdfCanvas(file, width, height, colourOf(page.paper()));
    double const fine = flatness / 10;  // who looks at it may enlarge it
    double const stretch = largestStretch(page.transform());
    std::vector<Point<2>> points;
    for (Entity const& entity : drawing.entities()) {
        flatten(entity.arc, page.transform(), stretch, fine, points);
        canvas->stroke(points, colourOf(entity.rgb), page.lineWidth());
    }
    canvas->finish();
}

DIBitmap renderPage(Drawing const& drawing, Page const& page) {
    auto const [width, height] = page.size();
    DIBitmap bitmap{static_cast<unsigned int>(width), -height, 32, 0};

    // A few bands for every processor, each of at most a million pixels to bound what a canvas may need besides.
    int const threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    int const rows = std::clamp(std::min((1 << 20) / width, height / (3 * threads)), 1, height);
    std::atomic<int> nextTop{0};
    std::mutex failing;
    std::exception_ptr failure;
    auto const work = [&, width = width, height = height] {
        try {
            for (int top; (top = nextTop.fetch_add(rows)) < height;) {
                unsigned char* const pixels = bitmap.bits() + std::ptrdiff_t{width} * top * 4;
                renderBand(drawing, page, {pixels, width, top, std::min(rows, height - top)});
            }
        } catch (...) {
            std::lock_guard const lock{failing};
            failure = std::current_exception();
            nextTop = height;
        }
    };
    {
        std::vector<std::jthread> helpers;
        try {
            while (static_cast<int>(helpers.size()) + 1 < threads) helpers.emplace_back(work);
        } catch (std::system_error const&) {  // then with fewer
        }
        work();
    }
    if (failure) std::rethrow_exception(failure);
    return bitmap;
}

}
