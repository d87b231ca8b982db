// Boxes of doubles and of ints.
#include "orn/geometry/IntegerExtent.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Extent<2> box(double x, double y, double x2, double y2) { return {Point<2>{x, y}, Point<2>{x2, y2}}; }
Extent<2> const unit = box(0, 0, 1, 1);

template <class E>
using NumberOf = decltype(E{}.lo(0));
template <class E>
constexpr int dimension = sizeof(E) / sizeof(NumberOf<E>) / 2;

template <class E>
class ExtentOf : public testing::Test {
protected:
    /// Of few coordinates, so that bounds often coincide.
    auto point() {
        NumberOf<E> c[3];
        for (auto& x : c) x = random_.whole(-3, 3);
        return decltype(E{}.lo()){c};
    }
    E box() { return {point(), point()}; }

private:
    RandomGeometry random_{3};
};
using Extents = testing::Types<Extent<1>, Extent<2>, Extent<3>, IExtent<2>, IExtent<3>>;
TYPED_TEST_SUITE(ExtentOf, Extents);
using BoxesOfDoublesTypes = testing::Types<Extent<1>, Extent<2>, Extent<3>>;

TYPED_TEST(ExtentOf, ObeysTheLawsOfBoxes) {
    using Box = TypeParam;
    for (int round = 0; round < 2000; ++round) {
        auto const p = this->point(), q = this->point();
        Box const a = this->box(), b = this->box(), both = a & b, either = a | b, pq{p, q};
        EXPECT_TRUE(pq == Box{} + p + q && !pq.degenerate() && pq == Box{} + pq.lo() + pq.hi());
        EXPECT_EQ(a.contains(p), a + p == a);
        EXPECT_EQ(a.contains(p) && b.contains(p), both.contains(p));
        EXPECT_TRUE((a + p).contains(p) && a <= a + p && either == a + b.lo() + b.hi());
        for (int i = 0; i < dimension<Box>; ++i)
            EXPECT_TRUE(pq.lo(i) == std::min(p[i], q[i]) && pq.hi(i) == std::max(p[i], q[i]));

        EXPECT_EQ(a <= b, either == b);
        EXPECT_EQ(a <= b, both == a);
        EXPECT_TRUE((a <= b) == (b >= a) && (a < b) == (a <= b && a != b) && (a > b) == (b < a));

        // A box that an intersection empties is the one empty value.
        EXPECT_TRUE(!both.degenerate() || both == Box::nothing());
        EXPECT_TRUE((Box::nothing() | a) == a && (a | Box::nothing()) == a);
        EXPECT_TRUE((Box::everything() & a) == a && (a & Box::nothing()) == Box::nothing());

        Box c = a, d = a, e = a;
        EXPECT_TRUE((c += p) == a + p && c == a + p && (d |= b) == either && d == either && (e &= b) == both &&
                    e == both);
    }
}

TYPED_TEST(ExtentOf, HasConstantsAndBoundsInAnyOrder) {
    using Box = TypeParam;
    using limits = std::numeric_limits<NumberOf<Box>>;
    constexpr int n = dimension<Box>;
    EXPECT_TRUE(Box{} == Box::nothing() && Box::nothing().degenerate() && !Box::everything().degenerate());
    EXPECT_TRUE(&Box::nothing() == &Box::m_nothing && &Box::everything() == &Box::m_everything);
    NumberOf<Box> rows[2][n], packed[2][n];
    for (int i = 0; i < n; ++i) rows[0][i] = 5 + i, rows[1][i] = 1 - i;
    Box const unordered{rows}, all = Box::everything();
    EXPECT_TRUE(unordered.degenerate());
    unordered.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(packed[0][i] == 5 + i && packed[1][i] == 1 - i);
        EXPECT_TRUE(Box{}.lo(i) == limits::max() && Box{}.hi(i) == limits::lowest());
        EXPECT_TRUE(all.lo(i) == limits::lowest() && all.hi(i) == limits::max());
    }
}

template <class E>
class BoxesOfDoubles : public ExtentOf<E> {};
TYPED_TEST_SUITE(BoxesOfDoubles, BoxesOfDoublesTypes);

TYPED_TEST(BoxesOfDoubles, HaveCornersAndAreUpdated) {
    int kept = 0, lost = 0;
    for (int round = 0; round < 2000; ++round) {
        TypeParam const e = this->box(), before = this->box(), after = this->box();
        for (unsigned int k = 0; k < 16; ++k)
            for (int i = 0; i < dimension<TypeParam>; ++i)
                EXPECT_EQ(e.corner(k)[i], k >> i & 1 ? e.hi(i) : e.lo(i)) << k << ' ' << i;
        EXPECT_TRUE(e.centre() == midpoint(e.lo(), e.hi()));
        TypeParam all = e | before;
        bool const exact = all.update(before, after);
        EXPECT_TRUE(exact ? all == (e | after) : (e | after) <= all) << "what was given up is still covered";
        ++(exact ? kept : lost);
    }
    EXPECT_TRUE(kept > 100 && lost > 100);
}

TEST(Extent, LetsNaNPass) {
    Extent<2> const mixed = box(nan, 1, 4, nan);
    EXPECT_TRUE(mixed.lo(0) == 4 && std::isnan(mixed.hi(0)) && std::isnan(mixed.lo(1)) && mixed.hi(1) == 1);
    EXPECT_TRUE((unit.contains(Point<2>{nan, 0.5})));
    EXPECT_FALSE((unit.contains(Point<2>{nan, 2})));
    EXPECT_TRUE((unit + Point<2>{nan, nan} == unit));
    Extent<2> const bad = box(nan, nan, nan, nan);
    EXPECT_FALSE(bad == bad);
    EXPECT_TRUE(bad <= unit && unit <= bad) << "nothing about NaN is outside";
    EXPECT_TRUE((unit & box(2, nan, 3, nan)) == Extent<2>::nothing());
}

TEST(Extent, DilatesAndShrinks) {
    EXPECT_TRUE(unit.dilate(2) == box(-2, -2, 3, 3));
    EXPECT_TRUE(unit.dilate(-0.5) == box(0.5, 0.5, 0.5, 0.5));
    EXPECT_TRUE(unit.dilate(-1) == Extent<2>::nothing());
    EXPECT_TRUE(box(0, 0, 9, 1).dilate(-1) == Extent<2>::nothing());
}

TEST(Extent, UpdateTakesEveryBoundEvenAfterOneIsLost) {
    Extent<2> e = box(0, 0, 10, 10);
    EXPECT_TRUE(e.update(box(1, 1, 2, 2), box(-1, 1, 2, 12)));
    EXPECT_TRUE(e == box(-1, 0, 10, 12));
    EXPECT_FALSE(e.update(box(-1, 1, 2, 12), box(0, -5, 20, 13)));
    EXPECT_TRUE(e == box(-1, -5, 20, 13));
}

TEST(Extent, WritesItsCorners) {
    EXPECT_EQ(written(Extent<1>{Point<1>{0}, Point<1>{1}}, unit, Extent<3>{Point<3>{0, 0, -1.5}, Point<3>{1, 1, 2}},
                      Extent<3>{}, IExtent<2>{IPoint<2>{1, 0}, IPoint<2>{0, -1}},
                      IExtent<3>{IPoint<3>{}, IPoint<3>{1, 2, 3}}, IExtent<2>{}),
              L"(0):(1)(0,0):(1,1)(0,0,-1.5):(1,1,2)degenerate(0,-1):(1,0)(0,0,0):(1,2,3)degenerate");
}

}
