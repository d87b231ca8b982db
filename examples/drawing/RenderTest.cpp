#include "drawing/Render.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

using drawing::Drawing;
using drawing::Page;

TEST(Render, EveryBandHasTheWholePicturesPixels) {
    std::mt19937 random{17};
    std::uniform_real_distribution<double> place{-100, 100}, bulge{-3, 3};
    Drawing drawing;
    for (int i = 0; i < 60; ++i) {
        Point<2> const a{place(random), place(random)}, b{place(random), place(random)};
        ORN::Arc<2> const arc{a, i % 3 == 0 ? 0.0 : bulge(random), i % 9 == 0 ? a : b};
        drawing.add(arc, static_cast<std::uint32_t>(random() & 0xFFFFFF), L"0", drawing::measure(arc));
    }
    int const width = 163, height = 121;
    for (double const zoom : {1.0, 40.0}) {
        Page const page{drawing, {width, height}, {.scaleX = 1.5, .degrees = 20, .closeup = {.zoom = zoom}}};
        int latest = 0;
        DIBitmap const whole = drawing::renderPage(drawing, page, [&](int perCent) {
            EXPECT_GE(perCent, latest);
            latest = perCent;
        });
        EXPECT_LE(latest, 100);
        drawing::Renderer const renderer{drawing, page};
        for (int const rows : {1, 50, height}) {
            std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height * 4), 0x77);
            for (int top = 0; top < height; top += rows) {
                renderer.draw({pixels.data() + top * width * 4, width, top, std::min(rows, height - top)});
            }
            EXPECT_EQ(std::memcmp(pixels.data(), whole.bits(), pixels.size()), 0) << "bands of " << rows;
        }
    }
}

TEST(Render, LinesWhoseEndsAreFarAwayCrossThePage) {
    Drawing drawing;
    ORN::Arc<2> const arc{{-1, -1}, {1, 1}};
    drawing.add(arc, 0, L"0", drawing::measure(arc));
    for (double const zoom : {1.0, 1e3, 1e6, 1e9}) {
        DIBitmap const picture = drawing::renderPage(drawing, Page{drawing, {100, 100}, {.closeup = {.zoom = zoom}}});
        for (unsigned int const row : {30u, 50u, 70u}) {
            EXPECT_LT(picture.row(row)[4 * (99 - row)], 100) << zoom << ' ' << row;
            EXPECT_EQ(picture.row(row)[4 * 10], 255) << zoom << ' ' << row;
        }
    }
}

TEST(Render, PlacesBeyondAllPagesLeaveThemAsTheyAre) {
    double const none = std::numeric_limits<double>::quiet_NaN(), far = std::numeric_limits<double>::infinity();
    std::vector<std::uint32_t> pixels(40 * 30, 0xFFFFFFFF);
    drawing::Strokes strokes{{reinterpret_cast<unsigned char*>(pixels.data()), 40, 0, 30}, 1.5};
    Point<2> const beside{-20, 15};
    for (Point<2> const& p : {Point<2>{20, none}, {none, 15}, {far, 15}, {20, -far}, {none, far}}) {
        strokes.draw(std::vector{p}, 0xFF000000);
        strokes.draw(std::vector{beside, p}, 0xFF000000);
    }
    strokes.draw(std::vector<Point<2>>{{9e4, -1e305}, {9e4, -3e14}}, 0xFF000000);
    EXPECT_EQ(std::ranges::count(pixels, 0xFFFFFFFF), 40 * 30);
}

}
