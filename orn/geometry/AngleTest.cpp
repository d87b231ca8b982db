#include "orn/geometry/Angle.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

static_assert(!std::equality_comparable<Angle>, "angles are compared with a tolerance");
template <typename T>
concept Scales = requires(Angle a, T n) {
    a* n;
}
|| requires(Angle a, T n) { a *= n; };
static_assert(Scales<int> && Scales<long> && !Scales<double> && !Scales<float>);
static_assert(Angle{}.cos() == 1 && Angle{}.sin() == 0 && Angle::pi == 3.14159265358979323846);

TEST(Angle, IsReadInThePrincipalRangeAndWritten) {
    struct {
        double given, read;
    } const cases[] = {{0, 0}, {10, 10}, {370, 10}, {-90, -90}, {270, -90}, {180, 180}, {-180, -180}, {1000, -80}};
    for (auto const& c : cases) {
        EXPECT_NEAR(Angle::degrees(c.given).degrees(), c.read, 1e-12) << c.given;
        EXPECT_NEAR(Angle::radians(c.given * Angle::pi / 180).radians(), c.read * Angle::pi / 180, 1e-14) << c.given;
    }
    EXPECT_EQ(written(Angle::degrees(90), L' ', Angle::degrees(-30)), L"90 -30");
    EXPECT_FALSE(Angle::degrees(infinity).isFinite());
    Angle const a = Angle::cosSin(3, 4), none = Angle::cosSin(0, 0);
    EXPECT_TRUE(a.cos() == 0.6 && a.sin() == 0.8 && a.tan() == 0.8 / 0.6 && a.isFinite());
    EXPECT_TRUE(std::isnan(none.cos()) && std::isnan(none.sin()) && !none.isFinite());
}

TEST(Angle, SumsAndMultiplesAreRotations) {
    RandomGeometry random{1};
    auto const same = [](Angle const& a, double degrees) {
        return closerThanDegrees(a, Angle::degrees(degrees), 1e-12);
    };
    for (int i = 0; i < 200; ++i) {
        double const x = random.number(-180, 180), y = random.number(-180, 180);
        Angle const a = Angle::degrees(x), b = Angle::degrees(y);
        EXPECT_TRUE(same(a + b, x + y) && same(a - b, x - y) && same(-a, -x) && same(+a, x) && same(a * -3, -3 * x));
        Angle c = a;
        EXPECT_TRUE(&(c += b) == &c && same(c, x + y));
        EXPECT_TRUE(&(c -= b) == &c && same(c, x));
        EXPECT_TRUE(&(c *= -3) == &c && same(c, -3 * x));
        EXPECT_NEAR(std::hypot(c.cos(), c.sin()), 1, 4e-16);
        EXPECT_TRUE(same(c += c, -6 * x)) << "an operand that is also the result";
    }
}

TEST(Angle, IsComparedTheShortWayRoundAndStrictly) {
    Angle const a = Angle::degrees(179), b = Angle::degrees(-179), none = Angle::cosSin(0, 0);
    EXPECT_TRUE(closerThanDegrees(a, b, 3) && closerThanDegrees(b, a, 3) && !closerThanDegrees(a, b, 1.999));
    EXPECT_TRUE(closerThanRadians(a, b, 0.03491) && !closerThanRadians(a, b, 0.03490));
    EXPECT_FALSE(closerThanRadians(a, a, 0) || closerThanDegrees(Angle{}, Angle{}, 0));
    EXPECT_FALSE(closerThanDegrees(a, none, 1000) || closerThanDegrees(a, a, infinity - infinity));
}

}
