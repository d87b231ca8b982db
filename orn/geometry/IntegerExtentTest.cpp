#include "orn/geometry/IntegerExtent.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <type_traits>

namespace {

constexpr int least = -2147483647 - 1, most = 2147483647;

template <class E, class P>
struct Family {
    using Extent = E;
    using Point = P;
};

template <class F>
class IntegerExtentOf : public testing::Test {};
using Families = testing::Types<Family<IExtent<2>, IPoint<2>>, Family<IExtent<3>, IPoint<3>>>;
TYPED_TEST_SUITE(IntegerExtentOf, Families);

TYPED_TEST(IntegerExtentOf, ObeysTheLawsOfBoxes) {
    using E = typename TypeParam::Extent;
    using P = typename TypeParam::Point;
    constexpr int n = sizeof(P) / sizeof(int);
    static_assert(std::is_trivially_copyable_v<E> && sizeof(E) == 2 * sizeof(P));

    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(E{}.lo(i) == most && E{}.hi(i) == least);
        EXPECT_TRUE(E::everything().lo(i) == least && E::everything().hi(i) == most);
    }
    EXPECT_TRUE(E{} == E::nothing() && E::nothing().degenerate() && !E::everything().degenerate());

    std::mt19937 random{4};
    std::uniform_int_distribution<int> small{-3, 3};
    auto const point = [&] {
        int c[3];
        for (int& x : c) x = small(random);
        return P{c};
    };
    for (int round = 0; round < 1000; ++round) {
        P const p = point(), q = point();
        E const a{point(), point()}, b{point(), point()};
        E const pq{p, q};
        for (int i = 0; i < n; ++i) EXPECT_TRUE(pq.lo(i) == std::min(p[i], q[i]) && pq.hi(i) == std::max(p[i], q[i]));
        EXPECT_TRUE(pq == E{} + p + q);
        EXPECT_EQ(a.contains(p), a + p == a);
        EXPECT_EQ(a.contains(p) && b.contains(p), (a & b).contains(p));
        EXPECT_EQ(a <= b, (a | b) == b);
        EXPECT_EQ(a >= b, (a & b) == b);
        EXPECT_EQ(a < b, a <= b && a != b);
        EXPECT_EQ(a > b, b < a);
        EXPECT_TRUE(!(a & b).degenerate() || (a & b) == E::nothing());
        EXPECT_TRUE((E::nothing() | a) == a && (E::everything() & a) == a);
    }

    int rows[2][n], packed[2][n];
    for (int i = 0; i < n; ++i) rows[0][i] = 5 + i, rows[1][i] = 1 - i;
    E const unordered{rows};
    EXPECT_TRUE(unordered.degenerate());
    unordered.packToPod(packed);
    for (int i = 0; i < n; ++i) EXPECT_TRUE(packed[0][i] == 5 + i && packed[1][i] == 1 - i);
}

TEST(IntegerExtent, WritesItsCorners) {
    std::wostringstream os;
    os << IExtent<2>{IPoint<2>{1, 0}, IPoint<2>{0, -1}} << L' ' << IExtent<3>{IPoint<3>{}, IPoint<3>{1, 2, 3}} << L' '
       << IExtent<2>{};
    EXPECT_EQ(os.str(), L"(0,-1):(1,0) (0,0,0):(1,2,3) degenerate");
}

}
