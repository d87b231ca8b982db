// needs: drawing PkgConfig::cairo
#include "drawing/Flatten.h"
#include "drawing/Render.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

#include <cairo.h>

namespace {

/// Short lines and arcs in a square, each in a colour of its own.
drawing::Drawing const& strokes() {
    static drawing::Drawing const made = [] {
        drawing::Drawing drawing;
        std::mt19937 random{5};
        std::uniform_real_distribution<double> place{0, 1000}, step{-4, 4}, bulge{-1, 1};
        for (int i = 0; i < 100'000; ++i) {
            Point<2> const from{place(random), place(random)};
            Point<2> const to = from + Vector<2>{step(random), step(random)};
            ORN::Arc<2> const arc{from, i % 3 != 0 ? bulge(random) : 0.0, to};
            drawing.add(arc, static_cast<std::uint32_t>(random() & 0xFFFFFF), L"0", drawing::measure(arc));
        }
        return drawing;
    }();
    return made;
}

drawing::Page page() { return {strokes(), {1200, 900}, {}}; }

void inOneThread(benchmark::State& state) {
    drawing::Page const page = ::page();
    std::vector<unsigned char> pixels(1200 * 900 * 4);
    for (auto _ : state) drawing::Renderer{strokes(), page}.draw({pixels.data(), 1200, 0, 900});
}
BENCHMARK(inOneThread)->Unit(benchmark::kMillisecond);

void inAllThreads(benchmark::State& state) {
    drawing::Page const page = ::page();
    for (auto _ : state) benchmark::DoNotOptimize(drawing::renderPage(strokes(), page).bits());
}
BENCHMARK(inAllThreads)->Unit(benchmark::kMillisecond)->UseRealTime();

void cairo(benchmark::State& state) {
    drawing::Page const page = ::page();
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> const surface{
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1200, 900), cairo_surface_destroy};
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> const context{cairo_create(surface.get()), cairo_destroy};
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context.get(), CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(context.get(), page.lineWidth());
    double const stretch = drawing::largestStretch(page.transform());
    std::vector<Point<2>> points;
    for (auto _ : state) {
        for (drawing::Entity const& entity : strokes().entities()) {
            drawing::flatten(entity.arc, page.transform(), stretch, 0.2, points);
            auto const channel = [&](int shift) { return (entity.rgb >> shift & 0xFF) / 255.0; };
            cairo_set_source_rgb(context.get(), channel(16), channel(8), channel(0));
            for (Point<2> const& p : points) cairo_line_to(context.get(), p.x(), p.y());
            cairo_stroke(context.get());
        }
        cairo_surface_flush(surface.get());
    }
}
BENCHMARK(cairo)->Unit(benchmark::kMillisecond);

}
