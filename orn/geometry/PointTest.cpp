#include "orn/geometry/Point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <concepts>
#include <limits>
#include <sstream>
#include <type_traits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class P>
class PointOf : public testing::Test {};
using Dimensions = testing::Types<Point<1>, Point<2>, Point<3>>;
TYPED_TEST_SUITE(PointOf, Dimensions);

TYPED_TEST(PointOf, IsMovedByVectorsAndMeasuredAgainstPoints) {
    using P = TypeParam;
    using V = decltype(P{} - P{});
    constexpr int n = sizeof(P) / sizeof(double);
    static_assert(std::is_trivially_copyable_v<P>);
    static_assert(std::equality_comparable<P> && !std::equality_comparable<V>, "vectors have no public comparison");

    double const ca[] = {7, -3, 0.1}, cb[] = {-0.7, 11, 1e-9};
    P const a{ca}, b{cb};
    V const v{cb};
    double packed[3] = {nan, nan, nan};
    a.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(P::origin()[i], 0);
        EXPECT_EQ(a[i], ca[i]);
        EXPECT_EQ(packed[i], ca[i]);
        EXPECT_EQ((a + v)[i], ca[i] + cb[i]);
        EXPECT_EQ((v + a)[i], ca[i] + cb[i]);
        EXPECT_EQ((a - v)[i], ca[i] - cb[i]);
        EXPECT_EQ((a - b)[i], ca[i] - cb[i]);
        EXPECT_EQ(midpoint(a, b)[i], (ca[i] + cb[i]) / 2);
        EXPECT_EQ(interp(a, b, 0.3)[i], 0.7 * ca[i] + 0.3 * cb[i]);
    }
    for (int i = n; i < 3; ++i) EXPECT_TRUE(std::isnan(packed[i]));
    EXPECT_TRUE(interp(a, b, 0) == a);
    EXPECT_TRUE(interp(a, b, 1) == b);
    EXPECT_TRUE(interp(P{}, b, 2) == P{} + v * 2) << "beyond the ends it extrapolates";
    EXPECT_EQ(&P::origin(), &P::m_origin);
    EXPECT_TRUE(P{} == P::origin());

    P c = a;
    EXPECT_EQ(&(c += v), &c);
    EXPECT_TRUE(c == a + v);
    EXPECT_EQ(&(c -= v), &c);
    EXPECT_TRUE(c == a + v - v);
}

TYPED_TEST(PointOf, IsComparedExactlyInEveryComponent) {
    using P = TypeParam;
    constexpr int n = sizeof(P) / sizeof(double);
    for (int i = 0; i < n; ++i) {
        double c[] = {0, 0, 0};
        c[i] = -0.0;
        EXPECT_TRUE(P{c} == P{});
        c[i] = 5e-324;
        EXPECT_FALSE(P{c} == P{});
        EXPECT_TRUE(P{c} != P{});
        c[i] = nan;
        EXPECT_TRUE(P{c} != P{c});
        EXPECT_FALSE(P{c} == P{c});
        EXPECT_TRUE(P{c}.isNaN());
        EXPECT_FALSE(P{c}.isFinite());
        c[i] = std::numeric_limits<double>::infinity();
        EXPECT_FALSE(P{c}.isNaN());
        EXPECT_FALSE(P{c}.isFinite());
    }
}

TEST(Point, DifferencesOfZerosHaveTheirSign) {
    double const minus[] = {-0.0, -0.0, -0.0};
    Point<1> const p{minus};
    Point<2> const q{minus};
    Point<3> const r{minus};
    EXPECT_TRUE(std::signbit((p - Point<1>{}).x()));
    EXPECT_TRUE(std::signbit((p - Vector<1>{}).x()));
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(std::signbit((q - Point<2>{})[i]));
        EXPECT_FALSE(std::signbit((q - Vector<2>{})[i]));
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(std::signbit((r - Point<3>{})[i]));
        EXPECT_FALSE(std::signbit((r - Vector<3>{})[i]));
    }
}

TEST(Point, IsIndexedWithoutLeavingItself) {
    static_assert(Point<1>{0}.x() == 0 && Point<1>{7L}[0] == 7);
    EXPECT_EQ((Point<2>{1, 2}[0]), 1);
    EXPECT_EQ((Point<2>{1, 2}[7]), 2);
    EXPECT_EQ((Point<3>{1, 2, 3}[1]), 2);
    EXPECT_EQ((Point<3>{1, 2, 3}[-1]), 3);
}

TEST(Point, WritesItsCoordinatesInParentheses) {
    std::wostringstream os;
    os << Point<1>{3} << Point<2>{1.5, -2} << Point<3>{1, 2, 0.25};
    EXPECT_EQ(os.str(), L"(3)(1.5,-2)(1,2,0.25)");
}

}
