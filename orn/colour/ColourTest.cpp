#include "orn/colour/Colour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace {

constexpr double tolerance = 1e-14;

struct Case {
    double r, g, b;
    double hue;  // degrees in [0, 360)
    double s_hsv, v, l, s_hls;
};

// By exact rational arithmetic.
constexpr Case cases[] = {
    {1, 0, 0, 0, 1, 1, 0.5, 1},
    {1, 1, 0, 60, 1, 1, 0.5, 1},
    {0, 1, 0, 120, 1, 1, 0.5, 1},
    {0, 1, 1, 180, 1, 1, 0.5, 1},
    {0, 0, 1, 240, 1, 1, 0.5, 1},
    {1, 0, 1, 300, 1, 1, 0.5, 1},
    {0.5, 0.5, 0.5, 0, 0, 0.5, 0.5, 0},
    {1, 1, 1, 0, 0, 1, 1, 0},
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0.25, 0.5, 0.75, 210, 0.6666666666666666, 0.75, 0.5, 0.5},
    {0.875, 0.125, 0.375, 340, 0.8571428571428571, 0.875, 0.5, 0.75},
    {0.75, 0.25, 0.875, 288, 0.7142857142857143, 0.875, 0.5625, 0.7142857142857143},
    {0.125, 0.0625, 0.03125, 20, 0.75, 0.125, 0.078125, 0.6},
    {0.5, 1, 0.75, 150, 0.5, 1, 0.75, 1},
    {1, 0.5, 0.5, 0, 0.5, 1, 0.75, 1},
    {0.9375, 0.96875, 0.5, 64, 0.4838709677419355, 0.96875, 0.734375, 0.8823529411764706},
};

void expectRGB(Colour const& colour, double r, double g, double b) {
    EXPECT_NEAR(colour.r(), r, tolerance);
    EXPECT_NEAR(colour.g(), g, tolerance);
    EXPECT_NEAR(colour.b(), b, tolerance);
}

TEST(Colour, ModelsOfOneColour) {
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "rgb " << c.r << ' ' << c.g << ' ' << c.b);
        Angle const hue = Angle::degrees(c.hue);
        auto const expectModels = [&](Colour colour) {
            EXPECT_NEAR(colour.l_hls(), c.l, tolerance);
            EXPECT_NEAR(colour.s_hls(), c.s_hls, tolerance);
            EXPECT_NEAR(colour.s_hsv(), c.s_hsv, tolerance);
            EXPECT_NEAR(colour.v_hsv(), c.v, tolerance);
            EXPECT_TRUE(closerThanDegrees(colour.h_hls(), hue, 1e-12) && closerThanDegrees(colour.h_hsv(), hue, 1e-12));
            expectRGB(colour, c.r, c.g, c.b);
            EXPECT_EQ(colour.a(), 1.0);
        };
        // Either model may be asked for first; the other is then made from it.
        Colour hsvFirst = Colour::rgb(c.r, c.g, c.b);
        hsvFirst.h_hsv();
        expectModels(hsvFirst);
        expectModels(Colour::rgb(c.r, c.g, c.b));
        expectRGB(Colour::hsv(hue, c.s_hsv, c.v), c.r, c.g, c.b);
        expectRGB(Colour::hls(hue, c.l, c.s_hls), c.r, c.g, c.b);
        if (c.s_hsv != 0) expectModels(Colour::hls(hue, c.l, c.s_hls));
    }
}

TEST(Colour, RGBComesBackThroughEachModel) {
    std::mt19937 random{6};
    std::uniform_real_distribution<double> component{0.0, 1.0};
    for (int i = 0; i < 2000; ++i) {
        Colour source = Colour::rgb(component(random), component(random), component(random));
        expectRGB(Colour::hsv(source.h_hsv(), source.s_hsv(), source.v_hsv()), source.r(), source.g(), source.b());
        expectRGB(Colour::hls(source.h_hls(), source.l_hls(), source.s_hls()), source.r(), source.g(), source.b());
    }
}

TEST(Colour, TheGivenModelIsKeptExactly) {
    Angle const hue = Angle::degrees(77);
    Colour hsv = Colour::hsva(hue, 0.1, 0.7, 0.25);
    Colour hls = Colour::hlsa(hue, 0.1, 0.7, 0.75);
    for (bool read : {false, true}) {
        if (read) {
            hsv.r(), hsv.l_hls();
            hls.r(), hls.v_hsv();
        }
        EXPECT_TRUE(hsv.h_hsv().cos() == hue.cos() && hsv.s_hsv() == 0.1 && hsv.v_hsv() == 0.7 && hsv.a() == 0.25);
        EXPECT_TRUE(hls.h_hls().sin() == hue.sin() && hls.l_hls() == 0.1 && hls.s_hls() == 0.7 && hls.a() == 0.75);
    }
}

TEST(Colour, TheHueOutlivesBlack) {
    // Black RGB knows no hue, so it shows which model the other one came from.
    for (bool rgbFirst : {false, true}) {
        Colour hls = Colour::hls(Angle::degrees(120), 0, 1);
        Colour hsv = Colour::hsv(Angle::degrees(120), 1, 0);
        if (rgbFirst) {
            EXPECT_EQ(hls.g(), 0);
            EXPECT_EQ(hsv.g(), 0);
        }
        EXPECT_EQ(hls.h_hsv().cos(), Angle::degrees(120).cos());
        EXPECT_EQ(hls.s_hsv(), 0);
        EXPECT_EQ(hsv.h_hls().cos(), Angle::degrees(120).cos());
        EXPECT_EQ(hsv.s_hls(), 0);
    }
}

TEST(Colour, RGBPrefersHLS) {
    // Saturation 2 gives HLS the lightness 0, hence black; HSV itself gives 0.75 and -0.75.
    Colour const direct = Colour::hsv(Angle{}, 2, 0.75);
    expectRGB(direct, 0.75, -0.75, -0.75);
    Colour const throughHLS = Colour::hsv(Angle{}, 2, 0.75);
    EXPECT_EQ(throughHLS.l_hls(), 0);
    expectRGB(throughHLS, 0, 0, 0);
}

TEST(Colour, SectorsOfTheHue) {
    struct {
        double degrees, r, g, b;
    } const sectors[] = {
        {0, 1, 0.2, 0.2},   {30, 1, 0.6, 0.2},  {60, 1, 1, 0.2},    {90, 0.6, 1, 0.2},  {120, 0.2, 1, 0.2},
        {150, 0.2, 1, 0.6}, {180, 0.2, 1, 1},   {210, 0.2, 0.6, 1}, {240, 0.2, 0.2, 1}, {270, 0.6, 0.2, 1},
        {300, 1, 0.2, 1},   {330, 1, 0.2, 0.6}, {-30, 1, 0.2, 0.6}, {-90, 0.6, 0.2, 1}, {390, 1, 0.6, 0.2},
    };
    for (auto const& s : sectors) {
        SCOPED_TRACE(s.degrees);
        expectRGB(Colour::hsv(Angle::degrees(s.degrees), 0.8, 1), s.r, s.g, s.b);
    }
    expectRGB(Colour::hsv(Angle::cosSin(0, 0), 0.8, 1), 0, 0, 0);  // no sector: the cleared components stay
}

TEST(Colour, PackedWordsIn) {
    Colour const fromARGB = Colour::argb(0x80FF3300), fromRef = Colour::colorref(0xAB003366);
    expectRGB(fromARGB, 1, 0.2, 0);
    expectRGB(fromRef, 0.4, 0.2, 0);
    EXPECT_TRUE(fromARGB.a() == 128 / 255.0 && fromRef.a() == 1 && Colour{}.a() == 1 && Colour{}.colorref() == 0);
    unsigned char const pixel[] = {0x10, 0x20, 0x30};
    Colour const fromDib = Colour::dib24(pixel);
    EXPECT_TRUE(fromDib.r() == 0x30 / 255.0 && fromDib.g() == 0x20 / 255.0 && fromDib.b() == 0x10 / 255.0);
}

std::vector<int> dib24(Colour const& colour) {
    unsigned char bytes[4] = {0, 0, 0, 0xEE};
    colour.getDib24(bytes);
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

int dib16(Colour const& colour) {
    unsigned char bytes[3] = {};
    colour.getDib16(bytes + 1);  // any address
    std::uint16_t word;
    std::memcpy(&word, bytes + 1, 2);
    return word;
}

TEST(Colour, DeviceValuesAreRoundedAndNotClamped) {
    using Bytes = std::vector<int>;
    EXPECT_EQ(dib24(Colour::rgb(0, 0.5, 1)), (Bytes{255, 128, 0, 0xEE}));
    EXPECT_EQ(dib24(Colour::rgb(1.2, -0.01, 0.25)), (Bytes{64, 0xFD, 50, 0xEE}));  // 306, -2.55 - 0.5, 63.75 + 0.5
    EXPECT_EQ(dib24(Colour::rgb(1e300, std::nan(""), 1 / 255.0)), (Bytes{1, 0, 0, 0xEE}));
    EXPECT_EQ(Colour::rgb(1, 0.5, 0).colorref(), 0x000080FFu);
    EXPECT_EQ(Colour::rgb(1.2, 0, 0).colorref(), 0x00000132u);  // 306 spills into green
    EXPECT_EQ(Colour::rgb(0, 0, -1 / 255.0).colorref(), 0xFFFF0000u);
    EXPECT_EQ(dib16(Colour::rgb(1, 1, 1)), 0x7FFF);
    EXPECT_EQ(dib16(Colour::rgb(1, 0, 0)), 0x7C00);
    EXPECT_EQ(dib16(Colour::rgb(0, 16 / 31.0, 0.5)), 0x0210);  // 15.5 rounds to 16
    EXPECT_EQ(dib16(Colour::rgb(0, 0, 33 / 31.0)), 0x0021);    // 33 spills into green
    EXPECT_EQ(dib16(Colour::hsv(Angle::degrees(240), 1, 1)), 0x001F);
}

TEST(Colour, TablesAreIndexedByTheRoundedChannels) {
    std::vector<unsigned char> red(512), green(512), blue(512);
    for (std::size_t i = 0; i < 512; ++i) {
        red[i] = static_cast<unsigned char>(i / 2);
        green[i] = static_cast<unsigned char>(255 - i);
        blue[i] = static_cast<unsigned char>(i + 3);
    }
    unsigned char p[3];
    Colour::rgb(1.2, 0.5, 0).getDib24(p, red.data(), green.data(), blue.data());
    EXPECT_TRUE(p[0] == 3 && p[1] == 255 - 128 && p[2] == 306 / 2);
    Colour::rgb(0.2, 0.4, 0.6).getDib24(p, green.data());
    EXPECT_TRUE(p[0] == 255 - 153 && p[1] == 255 - 102 && p[2] == 255 - 51);
}

TEST(Colour, CopiesTakeTheCacheAlong) {
    struct Counting : Colour {
        Counting() : Colour{0.25, 0.5, 0.75, 1} {}
        void calcHSV() const override {
            ++*count;
            Colour::calcHSV();
        }
        int* count = nullptr;
    } original;
    int conversions = 0;
    original.count = &conversions;
    EXPECT_EQ(original.v_hsv() + original.v_hsv(), 1.5);
    Counting const copy = original;
    Counting assigned;
    assigned = original;
    EXPECT_EQ(copy.v_hsv() + assigned.v_hsv(), 1.5);
    EXPECT_EQ(conversions, 1);
}

TEST(Colour, EqualColoursAreTheSameRGBAndOpacityInAnyModel) {
    Colour const red = Colour::rgb(1, 0, 0);
    Colour const same[] = {Colour::rgb(1, -0.0, 0), Colour::hsv(Angle{}, 1, 1), Colour::argb(0xFFFF0000)};
    for (Colour const& colour : same) {
        EXPECT_EQ(colour, red);
        EXPECT_EQ(std::hash<Colour>{}(colour), std::hash<Colour>{}(red));
    }
    for (Colour const& other : {Colour::rgba(1, 0, 0, 0.5), Colour::rgb(1, 1e-9, 0), Colour{}}) EXPECT_NE(other, red);
}

TEST(Colour, Output) {
    std::wostringstream os;
    os << Colour::rgba(1, 0, 0, 0.5) << Colour::hsv(Angle{}, 1, 0.75);
    EXPECT_EQ(os.str(), L"Colour::rgba(1,0,0,0.5)Colour::rgba(0.75,0,0,1)");
}

}
