#include "drawing/Render.h"

#include "orn/colour/ContextGdiplus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {

using drawing::Band;
using drawing::Drawing;
using drawing::Page;

void add(Drawing& drawing, ORN::Arc<2> const& arc, std::uint32_t rgb) {
    drawing.add(arc, rgb, L"0", drawing::measure(arc));
}

Drawing scribble() {
    std::mt19937 random{17};
    std::uniform_real_distribution<double> place{-100, 100}, bulge{-3, 3};
    Drawing drawing;
    for (int i = 0; i < 60; ++i) {
        Point<2> const a{place(random), place(random)}, b{place(random), place(random)};
        add(drawing, {a, i % 3 == 0 ? 0.0 : bulge(random), b}, static_cast<std::uint32_t>(random() & 0xFFFFFF));
    }
    return drawing;
}

TEST(Render, EveryBandHasTheWholePicturesPixels) {
    ContextGdiplus const graphics;
    Drawing const drawing = scribble();
    int const width = 163, height = 121;
    Page const page{drawing, {width, height}, {.scaleX = 1.5, .degrees = 20}};
    DIBitmap const whole = drawing::renderPage(drawing, page);
    for (int const rows : {1, 7, 50, height}) {
        std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height * 4), 0x77);
        for (int top = 0; top < height; top += rows) {
            renderBand(drawing, page, Band{pixels.data() + top * width * 4, width, top, std::min(rows, height - top)});
        }
        EXPECT_EQ(std::memcmp(pixels.data(), whole.bits(), pixels.size()), 0) << "bands of " << rows;
    }
}

struct Pixel {
    int red, green, blue, rest;
};

Pixel pixelOf(DIBitmap const& bitmap, int width, int x, int y) {
    unsigned char const* const p = bitmap.bits() + (y * width + x) * 4;
    return {p[2], p[1], p[0], p[3]};
}

TEST(Render, InkLiesWhereThePageSaysAndIsSmooth) {
    ContextGdiplus const graphics;
    Drawing drawing;
    add(drawing, {{0, 0}, {10, 0}}, 0x0000C0);
    add(drawing, {{10, 0}, 1, {10, 10}}, 0x008000);
    add(drawing, {{0, 10}, {10, 5}}, 0);
    add(drawing, {{5, 7}, 1, {5, 7}}, 0x800080);  // without length: a dot
    // The semicircle on the right reaches 15: 15 x 10 units on 1500 x 1000 pixels, with margins of 60 and 40.
    int const width = 1500;
    DIBitmap const bitmap = drawing::renderPage(drawing, Page{drawing, {width, 1000}, {}});
    std::int32_t height;
    std::memcpy(&height, bitmap.fileData() + 22, sizeof height);
    EXPECT_EQ(height, -1000);

    Pixel const dot = pixelOf(bitmap, width, 520, 316);
    EXPECT_TRUE(dot.green < 160 && dot.red > dot.green + 40 && dot.blue > dot.green + 40);
    Pixel const right = pixelOf(bitmap, width, 1440, 500), paper = pixelOf(bitmap, width, 1440, 40);
    EXPECT_TRUE(right.green > 100 && right.red < 90 && right.blue < 90);
    EXPECT_TRUE(paper.red == 255 && paper.green == 255 && paper.blue == 255 && paper.rest == 255);

    // Across the slanting black line greys lie between ink and paper.
    int greys = 0, darkest = 255;
    for (int x = 300; x < 340; ++x) {
        for (int y = 40; y < 500; ++y) {
            int const value = pixelOf(bitmap, width, x, y).green;
            greys += value > 20 && value < 235;
            darkest = std::min(darkest, value);
        }
    }
    EXPECT_GT(greys, 40);
    EXPECT_LT(darkest, 60);
}

}
