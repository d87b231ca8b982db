// Strokes beside those of another library, drawn one by one.
#include "drawing/Strokes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include <cairo.h>

namespace {

using Polyline = std::vector<Point<2>>;
using Pixels = std::vector<std::uint32_t>;

constexpr int side = 320;

Pixels drawnElsewhere(std::vector<Polyline> const& lines, std::vector<std::uint32_t> const& colours, double width) {
    Pixels pixels(side * side, 0xFFFFFFFF);
    auto* const bytes = reinterpret_cast<unsigned char*>(pixels.data());
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> const surface{
        cairo_image_surface_create_for_data(bytes, CAIRO_FORMAT_RGB24, side, side, side * 4), cairo_surface_destroy};
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> const context{cairo_create(surface.get()), cairo_destroy};
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context.get(), CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(context.get(), width);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        auto const channel = [&](int shift) { return (colours[i] >> shift & 0xFF) / 255.0; };
        cairo_set_source_rgb(context.get(), channel(16), channel(8), channel(0));
        for (Point<2> const& p : lines[i]) cairo_line_to(context.get(), p.x(), p.y());
        cairo_stroke(context.get());
    }
    cairo_surface_flush(surface.get());
    return pixels;
}

TEST(Strokes, AreThoseOfAnotherLibrary) {
    // Three things differ by more than two levels: the end of a level line where it lies between two of the pen's corners,
    // because the other library does not always take the same one; lines that leave the page, which the other library
    // shortens; and few pixels of long lines and sharp joins.
    std::mt19937 random{3};
    struct {
        double width, size, margin;
        std::size_t points;
        int count, most, beyond;
        double rise = 1;
    } const cases[] = {{1.5, 3, 5, 2, 9000, 2, 0},     {1.5, 140, 142, 2, 300, 6, 5},  {1.5, 5, 17, 4, 2000, 6, 5},
                       {1, 20, 42, 3, 300, 6, 5},      {6, 20, 44, 3, 200, 6, 5},      {20, 40, 51, 2, 40, 6, 5},
                       {3, 0.003, 3, 2, 900, 3, 5},    {6, 20, 22, 2, 60, 12, 400, 0}, {1.5, 3, -5, 2, 9000, 3, 5},
                       {1.5, 20, -5, 2, 300, 12, 400}, {1, 40, -5, 3, 300, 16, 400},   {6, 30, -5, 3, 200, 16, 400}};
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.points << " points, " << c.size << " apart, width " << c.width);
        std::uniform_real_distribution<double> place{c.margin, side - c.margin}, step{-c.size, c.size};
        std::vector<Polyline> lines(static_cast<std::size_t>(c.count));
        std::vector<std::uint32_t> colours;
        // One number after the other: the order in which arguments are computed is the compiler's.
        auto const onGrid = [&](double x, double y, auto& distribution, double rise) {
            x += distribution(random);
            y += rise * distribution(random);
            return Point<2>{std::floor(x * 256) / 256, std::floor(y * 256) / 256};
        };
        Pixels pixels(side * side, 0xFFFFFFFF);
        drawing::Strokes strokes{{reinterpret_cast<unsigned char*>(pixels.data()), side, 0, side}, c.width};
        for (Polyline& line : lines) {
            line.push_back(onGrid(0, 0, place, 1));
            while (line.size() < c.points) {
                line.push_back(onGrid(line.back().x(), line.back().y(), step, c.rise));
            }
            colours.push_back(static_cast<std::uint32_t>(random() & 0xFFFFFF));
            strokes.draw(line, 0xFF000000 | colours.back());
            if (line[0] == line[1]) line[1] += Vector<2>{1 / 256.0, 0};  // the other library draws no dots
        }
        Pixels const expected = drawnElsewhere(lines, colours, c.width);
        int worst = 0, beyond = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            for (int shift : {0, 8, 16}) {
                int const off = std::abs(static_cast<int>(pixels[i] >> shift & 0xFF) -
                                         static_cast<int>(expected[i] >> shift & 0xFF));
                worst = std::max(worst, off);
                beyond += off > 2;
            }
        }
        EXPECT_LE(worst, c.most);
        EXPECT_LE(beyond, c.beyond);
    }
}

}
