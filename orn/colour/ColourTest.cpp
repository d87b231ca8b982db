#include "orn/colour/Colour.h"

#include "tests/support/Geometry.h"

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
    {0, 0, 0, 0, 0, 0, 0, 0},
    {0.25, 0.5, 0.75, 210, 0.6666666666666666, 0.75, 0.5, 0.5},
    {0.75, 0.25, 0.875, 288, 0.7142857142857143, 0.875, 0.5625, 0.7142857142857143},
    {0.125, 0.0625, 0.03125, 20, 0.75, 0.125, 0.078125, 0.6},
};

void expectRGB(Colour const& colour, double r, double g, double b) {
    expectNear(Point<3>{colour.r(), colour.g(), colour.b()}, Point<3>{r, g, b}, tolerance);
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
    RandomGeometry random{6};
    for (int i = 0; i < 2000; ++i) {
        Colour source = Colour::rgb(random.number(0, 1), random.number(0, 1), random.number(0, 1));
        expectRGB(Colour::hsv(source.h_hsv(), source.s_hsv(), source.v_hsv()), source.r(), source.g(), source.b());
        expectRGB(Colour::hls(source.h_hls(), source.l_hls(), source.s_hls()), source.r(), source.g(), source.b());
    }
}

TEST(Colour, TheGivenModelIsKeptExactly) {
    Angle const hue = Angle::degrees(77);
    Colour hsv = Colour::hsva(hue, 0.1, 0.7, 0.25), hls = Colour::hlsa(hue, 0.1, 0.7, 0.75);
    hsv.r(), hsv.l_hls(), hls.r(), hls.v_hsv();
    EXPECT_TRUE(hsv.h_hsv().cos() == hue.cos() && hsv.s_hsv() == 0.1 && hsv.v_hsv() == 0.7 && hsv.a() == 0.25);
    EXPECT_TRUE(hls.h_hls().sin() == hue.sin() && hls.l_hls() == 0.1 && hls.s_hls() == 0.7 && hls.a() == 0.75);

    // The hue outlives black. Black RGB knows none, so it shows which model the other one came from.
    for (bool rgbFirst : {false, true}) {
        Colour blackHLS = Colour::hls(hue, 0, 1), blackHSV = Colour::hsv(hue, 1, 0);
        EXPECT_FALSE(rgbFirst && (blackHLS.g() != 0 || blackHSV.g() != 0));
        EXPECT_TRUE(blackHLS.h_hsv().cos() == hue.cos() && blackHLS.s_hsv() == 0);
        EXPECT_TRUE(blackHSV.h_hls().cos() == hue.cos() && blackHSV.s_hls() == 0);
    }
}

TEST(Colour, RGBPrefersHLSAndCopiesTakeAlongWhatIsComputed) {
    // Saturation 2 gives HLS the lightness 0, hence black; HSV itself gives 0.75 and -0.75.
    Colour const direct = Colour::hsv(Angle{}, 2, 0.75);
    expectRGB(direct, 0.75, -0.75, -0.75);
    Colour const throughHLS = Colour::hsv(Angle{}, 2, 0.75);
    EXPECT_EQ(throughHLS.l_hls(), 0);
    expectRGB(throughHLS, 0, 0, 0);
    Colour const copy = direct;
    Colour assigned;
    assigned = direct;
    EXPECT_EQ(copy.l_hls() + assigned.l_hls(), 0);
    expectRGB(copy, 0.75, -0.75, -0.75);
    expectRGB(assigned, 0.75, -0.75, -0.75);
}

TEST(Colour, TheHueGoesRoundAndIsNoneForNaN) {
    for (double const degrees : {-30.0, 330.0, 690.0})
        expectRGB(Colour::hsv(Angle::degrees(degrees), 0.8, 1), 1, 0.2, 0.6);
    expectRGB(Colour::hsv(Angle::cosSin(0, 0), 0.8, 1), 0, 0, 0);  // no sector: the cleared components stay
}

TEST(Colour, PackedWordsIn) {
    unsigned char const pixel[] = {0x33, 0x66, 0x99};
    Colour const fromARGB = Colour::argb(0x80FF3300), fromRef = Colour::colorref(0xAB003366),
                 fromDib = Colour::dib24(pixel);
    expectRGB(fromARGB, 1, 0.2, 0);
    expectRGB(fromRef, 0.4, 0.2, 0);
    expectRGB(fromDib, 0.6, 0.4, 0.2);
    EXPECT_TRUE(fromARGB.a() == 128 / 255.0 && fromRef.a() == 1 && fromDib.a() == 1);
    EXPECT_TRUE(Colour{}.a() == 1 && Colour{}.colorref() == 0);
}

TEST(Colour, DeviceValuesAreRoundedAndNotClamped) {
    struct {
        double r, g, b;
        int bytes[3], word;
        COLORREF reference;
    } const rows[] = {
        {0, 0.5, 1, {255, 128, 0}, 0x021F, 0xFF8000},  // 127.5 and 15.5 round up
        {1, 1, 1, {255, 255, 255}, 0x7FFF, 0xFFFFFF},
        {1.2, 0, 0, {0, 0, 50}, 0x9400, 0x000132},          // 306 spills into green, 37 out of the word
        {0, 0, 33 / 31.0, {15, 0, 0}, 0x0021, 0x010F0000},  // 33 and 271 spill
        {0.55 / 255, 0, -1 / 255.0, {255, 0, 1}, 0x0000, 0xFFFF0001},
        {1e300, std::nan(""), 1 / 255.0, {1, 0, 0}, 0x0000, 0x80010000},
    };
    for (auto const& row : rows) {
        Colour const colour = Colour::rgb(row.r, row.g, row.b);
        unsigned char p[6] = {0, 0, 0, 0xEE};
        colour.getDib24(p);
        EXPECT_TRUE(p[0] == row.bytes[0] && p[1] == row.bytes[1] && p[2] == row.bytes[2] && p[3] == 0xEE) << row.r;
        colour.getDib16(p + 3);  // any address
        EXPECT_EQ(p[3] | p[4] << 8, row.word) << row.r;
        EXPECT_EQ(colour.colorref(), row.reference) << row.r;
    }
}

TEST(Colour, TablesAreIndexedByTheRoundedChannels) {
    unsigned char red[512], green[512], blue[512], p[3];
    for (int i = 0; i < 512; ++i) red[i] = i / 2, green[i] = (255 - i) & 255, blue[i] = (i + 3) & 255;
    Colour::rgb(1.2, 0.5, 0).getDib24(p, red, green, blue);
    EXPECT_TRUE(p[0] == 3 && p[1] == 255 - 128 && p[2] == 306 / 2);
    Colour::rgb(0.2, 0.4, 0.6).getDib24(p, green);
    EXPECT_TRUE(p[0] == 255 - 153 && p[1] == 255 - 102 && p[2] == 255 - 51);
}

TEST(Colour, EqualColoursAreTheSameRGBAndOpacityInAnyModelAndWrittenSo) {
    Colour const red = Colour::rgb(1, 0, 0);
    for (Colour const& same : {Colour::rgb(1, -0.0, 0), Colour::hsv(Angle{}, 1, 1), Colour::argb(0xFFFF0000)})
        EXPECT_TRUE(same == red && std::hash<Colour>{}(same) == std::hash<Colour>{}(red));
    for (Colour const& other : {Colour::rgba(1, 0, 0, 0.5), Colour::rgb(1, 1e-9, 0), Colour::rgb(1, 0, 1), Colour{}})
        EXPECT_TRUE(other != red && std::hash<Colour>{}(other) != std::hash<Colour>{}(red));
    EXPECT_EQ(written(Colour::rgba(1, 0, 0, 0.5), Colour::hsv(Angle{}, 1, 0.75)),
              L"Colour::rgba(1,0,0,0.5)Colour::rgba(0.75,0,0,1)");
}

}
