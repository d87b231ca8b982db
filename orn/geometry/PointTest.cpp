#include "orn/geometry/Point.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class D>
class PointOf : public testing::Test {};
using Dimensions = testing::Types<Dimension<1>, Dimension<2>, Dimension<3>>;
TYPED_TEST_SUITE(PointOf, Dimensions);

TYPED_TEST(PointOf, IsMovedByVectorsAndMeasuredAgainstPoints) {
    constexpr int n = TypeParam::value;
    using P = Point<n>;
    double const ca[] = {7, -3, 0.1}, cb[] = {-0.7, 11, 1e-9}, minus[] = {-0.0, -0.0, -0.0};
    P const a{ca}, b{cb};
    Vector<n> const v{cb};
    double packed[3] = {nan, nan, nan};
    a.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(P::origin()[i] == 0 && a[i] == ca[i] && packed[i] == ca[i]);
        EXPECT_TRUE((a + v)[i] == ca[i] + cb[i] && (v + a)[i] == ca[i] + cb[i]);
        EXPECT_TRUE((a - v)[i] == ca[i] - cb[i] && (a - b)[i] == ca[i] - cb[i]);
        EXPECT_EQ(midpoint(a, b)[i], (ca[i] + cb[i]) / 2);
        EXPECT_EQ(interp(a, b, 0.3)[i], 0.7 * ca[i] + 0.3 * cb[i]);
        // Differences of zeros have the first one's sign on the line, and none in the plane and in space.
        EXPECT_EQ(std::signbit((P{minus} - P{})[i]), n == 1);
        EXPECT_EQ(std::signbit((P{minus} - Vector<n>{})[i]), n == 1);
    }
    for (int i = n; i < 3; ++i) EXPECT_TRUE(std::isnan(packed[i]));
    EXPECT_TRUE(interp(a, b, 0) == a && interp(a, b, 1) == b);
    EXPECT_TRUE(interp(P{}, b, 2) == P{} + v * 2) << "beyond the ends it extrapolates";
    EXPECT_EQ(&P::origin(), &P::m_origin);

    P c = a;
    EXPECT_TRUE(&(c += v) == &c && c == a + v);
    EXPECT_TRUE(&(c -= v) == &c && c == a + v - v);
}

TYPED_TEST(PointOf, IsComparedExactlyInEveryComponent) {
    using P = Point<TypeParam::value>;
    for (int i = 0; i < TypeParam::value; ++i) {
        double c[] = {0, 0, 0};
        c[i] = -0.0;
        EXPECT_TRUE(P{c} == P{} && P{c}.isFinite());
        c[i] = 5e-324;
        EXPECT_TRUE(P{c} != P{} && !(P{c} == P{}));
        c[i] = nan;
        EXPECT_TRUE(P{c} != P{c} && P{c}.isNaN() && !P{c}.isFinite());
        c[i] = std::numeric_limits<double>::infinity();
        EXPECT_TRUE(!P{c}.isNaN() && !P{c}.isFinite());
    }
}

TEST(Point, IsIndexedWithoutLeavingItselfAndWritten) {
    static_assert(Point<1>{0}.x() == 0 && Point<1>{7L}[0] == 7);
    EXPECT_TRUE((Point<2>{1, 2}[0] == 1 && Point<2>{1, 2}[7] == 2));
    EXPECT_TRUE((Point<3>{1, 2, 3}[1] == 2 && Point<3>{1, 2, 3}[-1] == 3));
    EXPECT_EQ(written(Point<1>{3}, Point<2>{1.5, -2}, Point<3>{1, 2, 0.25}), L"(3)(1.5,-2)(1,2,0.25)");
}

}
