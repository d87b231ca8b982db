#include "orn/geometry/IntegerPoint.h"

#include "tests/support/Geometry.h"

namespace {

template <class D>
class IntegerPointOf : public testing::Test {};
TYPED_TEST_SUITE(IntegerPointOf, PlaneAndSpace);

TYPED_TEST(IntegerPointOf, DoesItsArithmeticByComponents) {
    constexpr int n = TypeParam::value;
    using V = IVector<n>;
    using P = IPoint<n>;
    static_assert(std::is_same_v<decltype(std::declval<V&>() += V{}), V const&>);
    static_assert(requires(V v) { v * 2, v * 2L, v *= 2; });
    constexpr auto scales = [](auto v, auto s) {
        return requires { v* s; }
        || requires { v *= s; };
    };
    static_assert(!scales(V{}, 0.5) && !scales(V{}, 0.5F));

    int const ca[] = {7, -3, 2147483647}, cb[] = {-4, 11, -2147483647};
    V const a{ca}, b{cb};
    P p{ca};
    V sum = a, difference = b, product = b;
    EXPECT_TRUE(&(sum += b) == &sum && &(difference -= b) == &difference && &(product *= -1) == &product);
    EXPECT_EQ(&(p += b), &p);
    int packed[3] = {99, 99, 99};
    p.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(V{}[i] == 0 && P::origin()[i] == 0 && a[i] == ca[i]);
        EXPECT_TRUE((a + b)[i] == ca[i] + cb[i] && sum[i] == ca[i] + cb[i] && packed[i] == ca[i] + cb[i]);
        EXPECT_TRUE((b - b)[i] == 0 && difference[i] == 0);
        EXPECT_TRUE((-a)[i] == -ca[i] && (b * -1)[i] == -cb[i] && product[i] == -cb[i]);
    }
    for (int i = n; i < 3; ++i) EXPECT_EQ(packed[i], 99);
    EXPECT_EQ(&(p -= b), &p);
    for (int i = 0; i < n; ++i) EXPECT_EQ(p[i], ca[i]);
    EXPECT_TRUE(a[n - 1] == a[-1] && p[n - 1] == p[99]) << "an index beyond the others gives the last coordinate";
    EXPECT_EQ(&P::origin(), &P::m_origin);
    EXPECT_TRUE(p.isFinite() && !p.isNaN());
}

TEST(IntegerPoint, IsMadeFromCoordinatesAndWritten) {
    static_assert(IPoint<2>{1, 2}.y() == 2 && IPoint<3>{1, 2, 3}.z() == 3 && IVector<3>{1, 2, 3}.y() == 2);
    EXPECT_EQ(written(IVector<2>{1, -2}, +IVector<3>{1, 2, 3}), L"(1,-2)(1,2,3)");
}

}
