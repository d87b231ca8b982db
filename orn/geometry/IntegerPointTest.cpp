#include "orn/geometry/IntegerPoint.h"

#include <gtest/gtest.h>

#include <sstream>
#include <type_traits>
#include <utility>

namespace {

template <class V, class P>
struct Family {
    using Vector = V;
    using Point = P;
};

template <class F>
class IntegerPointOf : public testing::Test {};
using Families = testing::Types<Family<IVector<2>, IPoint<2>>, Family<IVector<3>, IPoint<3>>>;
TYPED_TEST_SUITE(IntegerPointOf, Families);

TYPED_TEST(IntegerPointOf, DoesItsArithmeticByComponents) {
    using V = typename TypeParam::Vector;
    using P = typename TypeParam::Point;
    constexpr int n = sizeof(V) / sizeof(int);
    static_assert(std::is_trivially_copyable_v<V> && std::is_trivially_copyable_v<P> && sizeof(P) == sizeof(V));
    static_assert(std::is_same_v<decltype(std::declval<V&>() += V{}), V const&>);

    int const ca[] = {7, -3, 2147483647}, cb[] = {-4, 11, -2147483647};
    V const a{ca}, b{cb};
    P p{ca};
    V sum = a, difference = b, product = b;
    EXPECT_EQ(&(sum += b), &sum);
    EXPECT_EQ(&(difference -= b), &difference);
    EXPECT_EQ(&(product *= -1), &product);
    EXPECT_EQ(&(p += b), &p);
    int packed[3] = {99, 99, 99};
    p.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(V{}[i], 0);
        EXPECT_EQ(P::origin()[i], 0);
        EXPECT_EQ(a[i], ca[i]);
        EXPECT_EQ((a + b)[i], ca[i] + cb[i]);
        EXPECT_EQ((b - b)[i], 0);
        EXPECT_EQ((-a)[i], -ca[i]);
        EXPECT_EQ((b * -1)[i], -cb[i]);
        EXPECT_EQ(sum[i], ca[i] + cb[i]);
        EXPECT_EQ(difference[i], 0);
        EXPECT_EQ(product[i], -cb[i]);
        EXPECT_EQ(packed[i], ca[i] + cb[i]);
    }
    for (int i = n; i < 3; ++i) EXPECT_EQ(packed[i], 99);
    EXPECT_EQ(&(p -= b), &p);
    for (int i = 0; i < n; ++i) EXPECT_EQ(p[i], ca[i]);
    EXPECT_EQ(a[n - 1], a[-1]) << "an index beyond the others gives the last coordinate";
    EXPECT_EQ(p[n - 1], p[99]);
    EXPECT_EQ(&P::origin(), &P::m_origin);
    EXPECT_TRUE(p.isFinite() && !p.isNaN());
}

TEST(IntegerPoint, IsMadeFromCoordinates) {
    static_assert(IPoint<2>{1, 2}.y() == 2 && IPoint<3>{1, 2, 3}.z() == 3 && IVector<3>{1, 2, 3}.y() == 2);
    std::wostringstream os;
    os << IVector<2>{1, -2} << +IVector<3>{1, 2, 3};
    EXPECT_EQ(os.str(), L"(1,-2)(1,2,3)");
}

}
