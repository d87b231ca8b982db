#include "orn/geometry/Angle.h"

#include <gtest/gtest.h>

#include <concepts>
#include <limits>
#include <random>
#include <sstream>
#include <type_traits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

static_assert(!std::equality_comparable<Angle>, "angles are compared with a tolerance");
static_assert(std::is_trivially_copyable_v<Angle> && sizeof(Angle) == 16);
static_assert(Angle{}.cos() == 1 && Angle{}.sin() == 0 && Angle::pi == 3.14159265358979323846);

TEST(Angle, IsReadInThePrincipalRange) {
    struct {
        double written, read;
    } const cases[] = {{0, 0}, {10, 10}, {370, 10}, {-90, -90}, {270, -90}, {180, 180}, {-180, -180}, {1000, -80}};
    for (auto const& c : cases) {
        EXPECT_NEAR(Angle::degrees(c.written).degrees(), c.read, 1e-12) << c.written;
        EXPECT_NEAR(Angle::radians(c.written * Angle::pi / 180).degrees(), c.read, 1e-12) << c.written;
        EXPECT_NEAR(Angle::degrees(c.written).radians(), c.read * Angle::pi / 180, 1e-14) << c.written;
    }
    EXPECT_EQ(Angle{}.degrees(), 0);
}

TEST(Angle, OfAVectorIsItsDirection) {
    Angle const a = Angle::cosSin(3, 4);
    EXPECT_EQ(a.cos(), 0.6);
    EXPECT_EQ(a.sin(), 0.8);
    EXPECT_DOUBLE_EQ(a.tan(), 4.0 / 3);
    EXPECT_TRUE(a.isFinite());
    EXPECT_EQ(Angle::cosSin(0, 2).tan(), std::numeric_limits<double>::infinity());

    Angle const none = Angle::cosSin(0, 0);
    EXPECT_TRUE(std::isnan(none.cos()) && std::isnan(none.sin()));
    EXPECT_FALSE(none.isFinite());
    EXPECT_FALSE(Angle::degrees(std::numeric_limits<double>::infinity()).isFinite());
}

TEST(Angle, SumsAndMultiplesAreRotations) {
    std::mt19937 random{1};
    std::uniform_real_distribution<double> degrees{-180, 180};
    for (int i = 0; i < 200; ++i) {
        double const x = degrees(random), y = degrees(random);
        Angle const a = Angle::degrees(x), b = Angle::degrees(y);
        EXPECT_TRUE(closerThanDegrees(a + b, Angle::degrees(x + y), 1e-12));
        EXPECT_TRUE(closerThanDegrees(a - b, Angle::degrees(x - y), 1e-12));
        EXPECT_TRUE(closerThanDegrees(-a, Angle::degrees(-x), 1e-12));
        EXPECT_TRUE(closerThanDegrees(a * -3, Angle::degrees(x * -3), 1e-12));

        Angle c = +a;
        EXPECT_EQ(&(c += b), &c);
        EXPECT_EQ(c.cos(), (a + b).cos());
        EXPECT_EQ(c.sin(), (a + b).sin());
        EXPECT_EQ(&(c -= b), &c);
        EXPECT_TRUE(closerThanRadians(c, a, 1e-14));
        EXPECT_EQ(&(c *= 2), &c);
        EXPECT_NEAR(std::hypot(c.cos(), c.sin()), 1, 4e-16);
    }
    EXPECT_NEAR((Angle::degrees(100) * 4).degrees(), 40, 1e-12);
    Angle turned = Angle::cosSin(0, 1);
    turned += turned;
    EXPECT_EQ(turned.cos(), -1) << "an operand that is also the result";
    EXPECT_EQ(turned.sin(), 0);
}

TEST(Angle, IsComparedTheShortWayRoundAndStrictly) {
    Angle const a = Angle::degrees(179), b = Angle::degrees(-179);
    EXPECT_TRUE(closerThanDegrees(a, b, 3));
    EXPECT_TRUE(closerThanDegrees(b, a, 3));
    EXPECT_FALSE(closerThanDegrees(a, b, 1.999));
    EXPECT_TRUE(closerThanRadians(a, b, 0.03491));
    EXPECT_FALSE(closerThanRadians(a, b, 0.03490));
    EXPECT_FALSE(closerThanRadians(a, a, 0));
    EXPECT_FALSE(closerThanDegrees(Angle{}, Angle{}, 0));
    EXPECT_FALSE(closerThanDegrees(a, Angle::cosSin(0, 0), 1000));
    EXPECT_FALSE(closerThanDegrees(a, a, nan));
}

TEST(Angle, WritesItsDegrees) {
    std::wostringstream os;
    os << Angle::degrees(90) << L' ' << Angle::degrees(-30);
    EXPECT_EQ(os.str(), L"90 -30");
}

}
