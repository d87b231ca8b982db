#include "orn/geometry/Elementary.h"

#include "tests/support/Digest.h"
#include "tests/support/ElementaryCases.h"

#include <gtest/gtest.h>

#include <cfenv>

namespace {

// Measured where mpfr is, and by their digests the same results everywhere else.
TEST(Elementary, IsWithinFiftyFiveHundredthsOfADigitAndTheSameOnEverySystem) {
    constexpr std::uint64_t digests[] = {0xce74187d55aa78cf, 0xdc5752aeb9e5c24f, 0xcdf41c92b549a1be, 0x88f75716b69f3dc3,
                                         0x5d0cbb6609b63c51, 0xcc65fd537df89fee, 0xf78c34620fd9fa73};
    static_assert(std::size(digests) == std::size(elementary::functions));
    ASSERT_GT(elementary::hardAngles().size(), 100u);
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
                good = (raised == 0 || !std::isfinite(a.x) || !std::isfinite(a.y)) &&
                       elementary::same(mirrored, function.even ? result : -result);
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

// The reduced angle may be the one beyond the next right angle then, and must find its row of the table all the same.
TEST(Elementary, SinesStayNearWhenTheProgramDoesNotRoundToNearest) {
    for (int const mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        for (double x = -8; x < 8; x += 0x1p-7) {
            auto const [sine, cosine] = ORN::sineAndCosine(x);
            ASSERT_EQ(std::fesetround(mode), 0);
            auto const other = ORN::sineAndCosine(x);
            std::fesetround(FE_TONEAREST);
            EXPECT_TRUE(std::fabs(other.sine - sine) < 1e-15 && std::fabs(other.cosine - cosine) < 1e-15) << x;
        }
    }
}

}
