#include "orn/geometry/Elementary.h"

#include "tests/support/Digest.h"
#include "tests/support/ElementaryCases.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>

namespace {

// Measured where mpfr is, and by their digests the same results everywhere else.
TEST(Elementary, IsWithinFiftyFiveHundredthsOfADigitAndTheSameOnEverySystem) {
    constexpr std::uint64_t digests[] = {0x2b3bd11f4abf819b, 0xd61df74318db20a6, 0xac69fb7751a3f0e8, 0x579df8a281b51d53,
                                         0xd595a5ea04ca6423, 0xb0a9320cab95113b, 0xd4e67f0a584d2476};
    static_assert(std::size(digests) == std::size(elementary::functions));
#ifdef ORN_TEST_MPFR
    elementary::Error error;
#endif
    for (std::size_t i = 0; i < std::size(digests); ++i) {
        auto const& function = elementary::functions[i];
        SCOPED_TRACE(function.name);
        elementary::Random random;
        Digest digest;
        bool good = true;  // no more than one failure of each function is told
        for (auto const& range : elementary::ranges) {
            for (int round = 0; round < 4000 && good; ++round) {
                auto const a = range.next(random);
                std::feclearexcept(FE_ALL_EXCEPT);
                double const result = function.here(a);
                int const raised =
                    std::fetestexcept(FE_INVALID | FE_DIVBYZERO | (std::isfinite(result) ? FE_OVERFLOW : 0));
                double const mirrored = function.here({-a.x, a.y});
                digest.add(result);
                good = raised == 0 && mirrored == (function.even ? result : -result);
#ifdef ORN_TEST_MPFR
                good = good && error.of(function, a, result) <= 0.55;
#endif
                EXPECT_TRUE(good) << range.name << ": " << a.x << ", " << a.y << " gives " << result << ", mirrored "
                                  << mirrored << ", and raises " << raised;
            }
        }
        EXPECT_EQ(digest.value(), digests[i]) << std::hex << std::showbase << digest.value();
    }
}

// As annex F of the C standard says.
TEST(Elementary, HasTheStandardsResultsForZerosInfinitiesAndNaN) {
    constexpr double zero = 0, inf = std::numeric_limits<double>::infinity(),
                     nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double pi = 0x1.921fb54442d18p+1, least = std::numeric_limits<double>::denorm_min();
    auto const same = [](double a, double b) {
        return std::isnan(b) ? std::isnan(a) : a == b && std::signbit(a) == std::signbit(b);
    };
    struct {
        double x, sine, cosine, tangent, arcTangent, cubeRoot;
    } const ofOne[] = {
        {zero, zero, 1, zero, zero, zero},    {-zero, -zero, 1, -zero, -zero, -zero}, {inf, nan, nan, nan, pi / 2, inf},
        {-inf, nan, nan, nan, -pi / 2, -inf}, {nan, nan, nan, nan, nan, nan},
    };
    for (auto const& [x, sine, cosine, tangent, arcTangent, cubeRoot] : ofOne) {
        EXPECT_PRED2(same, ORN::sineAndCosine(x).sine, sine) << x;
        EXPECT_PRED2(same, ORN::sineAndCosine(x).cosine, cosine) << x;
        EXPECT_PRED2(same, ORN::tangent(x), tangent) << x;
        EXPECT_PRED2(same, ORN::arcTangent(x), arcTangent) << x;
        EXPECT_PRED2(same, ORN::cubeRoot(x), cubeRoot) << x;
    }
    struct {
        double y, x, direction, hypotenuse;
    } const ofTwo[] = {
        {zero, zero, zero, zero},     {zero, -zero, pi, zero}, {zero, 2, zero, 2},      {zero, -2, pi, 2},
        {2, zero, pi / 2, 2},         {2, -zero, pi / 2, 2},   {2, inf, zero, inf},     {2, -inf, pi, inf},
        {inf, 2, pi / 2, inf},        {inf, -2, pi / 2, inf},  {inf, inf, pi / 4, inf}, {inf, -inf, 3 * pi / 4, inf},
        {zero, nan, nan, nan},        {2, nan, nan, nan},      {inf, nan, nan, inf},    {least, inf, zero, inf},
        {least, 1, least, 1},         {least, -1, pi, 1},      {1, least, pi / 2, 1},   {least, least, pi / 4, least},
        {least, zero, pi / 2, least},
    };
    for (auto const& [y, x, direction, hypotenuse] : ofTwo) {
        EXPECT_PRED2(same, ORN::arcTangent(y, x), direction) << y << ' ' << x;
        EXPECT_PRED2(same, ORN::arcTangent(-y, x), -direction) << y << ' ' << x;
        for (double const a : {x, -x})
            for (double const b : {y, -y}) {
                EXPECT_PRED2(same, ORN::hypotenuse(a, b), hypotenuse) << a << ' ' << b;
                EXPECT_PRED2(same, ORN::hypotenuse(b, a), hypotenuse) << a << ' ' << b;
            }
    }
    EXPECT_TRUE(std::isnan(ORN::arcTangent(nan, 2)) && std::isnan(ORN::arcTangent(nan, inf)));
}

}
