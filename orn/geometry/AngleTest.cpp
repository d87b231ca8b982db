#include "orn/geometry/Angle.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

static_assert(!std::equality_comparable<Angle>, "angles are compared with a tolerance");
template <typename T, typename U>
concept Scales = requires(T t, U u) {
    t* u;
    t *= u;
};
static_assert(Scales<Angle, int> && Scales<Angle, long> && !Scales<Angle, double> && !Scales<Angle, float>);
static_assert(Angle{}.cos() == 1 && Angle{}.sin() == 0 && Angle::pi == 3.14159265358979323846);

TEST(Angle, IsReadInThePrincipalRangeAndWritten) {
    struct {
        double given, read;
    } const cases[] = {{0, 0}, {10, 10}, {370, 10}, {-90, -90}, {270, -90}, {180, 180}, {-180, -180}, {1000, -80}};
    for (auto const& c : cases) {
        EXPECT_NEAR(Angle::degrees(c.given).degrees(), c.read, 1e-12) << c.given;
        EXPECT_NEAR(Angle::radians(c.given * Angle::pi / 180).degrees(), c.read, 1e-12) << c.given;
        EXPECT_NEAR(Angle::degrees(c.given).radians(), c.read * Angle::pi / 180, 1e-14) << c.given;
    }
    EXPECT_EQ(written(Angle::degrees(90), L' ', Angle::degrees(-30)), L"90 -30");
}

TEST(Angle, OfAVectorIsItsDirection) {
    Angle const a = Angle::cosSin(3, 4), none = Angle::cosSin(0, 0);
    EXPECT_TRUE(a.cos() == 0.6 && a.sin() == 0.8 && a.isFinite());
    EXPECT_DOUBLE_EQ(a.tan(), 4.0 / 3);
    EXPECT_EQ(Angle::cosSin(0, 2).tan(), infinity);
    EXPECT_TRUE(std::isnan(none.cos()) && std::isnan(none.sin()) && !none.isFinite());
    EXPECT_FALSE(Angle::degrees(infinity).isFinite());
}

TEST(Angle, SumsAndMultiplesAreRotations) {
    RandomGeometry random{1};
    for (int i = 0; i < 200; ++i) {
        double const x = random.number(-180, 180), y = random.number(-180, 180);
        Angle const a = Angle::degrees(x), b = Angle::degrees(y);
        EXPECT_TRUE(closerThanDegrees(a + b, Angle::degrees(x + y), 1e-12));
        EXPECT_TRUE(closerThanDegrees(a - b, Angle::degrees(x - y), 1e-12));
        EXPECT_TRUE(closerThanDegrees(-a, Angle::degrees(-x), 1e-12));
        EXPECT_TRUE(closerThanDegrees(a * -3, Angle::degrees(x * -3), 1e-12));

        Angle c = +a;
        EXPECT_EQ(&(c += b), &c);
        EXPECT_TRUE(c.cos() == (a + b).cos() && c.sin() == (a + b).sin());
        EXPECT_EQ(&(c -= b), &c);
        EXPECT_TRUE(closerThanRadians(c, a, 1e-14));
        EXPECT_EQ(&(c *= 2), &c);
        EXPECT_TRUE(closerThanDegrees(c, Angle::degrees(2 * x), 1e-12));
        EXPECT_NEAR(std::hypot(c.cos(), c.sin()), 1, 4e-16);
    }
    Angle turned = Angle::cosSin(0, 1);
    turned += turned;
    EXPECT_TRUE(turned.cos() == -1 && turned.sin() == 0) << "an operand that is also the result";
}

TEST(Angle, IsComparedTheShortWayRoundAndStrictly) {
    Angle const a = Angle::degrees(179), b = Angle::degrees(-179);
    EXPECT_TRUE(closerThanDegrees(a, b, 3) && closerThanDegrees(b, a, 3));
    EXPECT_FALSE(closerThanDegrees(a, b, 1.999));
    EXPECT_TRUE(closerThanRadians(a, b, 0.03491));
    EXPECT_FALSE(closerThanRadians(a, b, 0.03490));
    EXPECT_FALSE(closerThanRadians(a, a, 0) || closerThanDegrees(Angle{}, Angle{}, 0));
    EXPECT_FALSE(closerThanDegrees(a, Angle::cosSin(0, 0), 1000));
    EXPECT_FALSE(closerThanDegrees(a, a, infinity - infinity));
}

}
