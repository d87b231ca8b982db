// Boxes of doubles and of ints.
#include "orn/geometry/IntegerExtent.h"

#include "tests/support/BoxLaws.h"
#include "tests/support/Geometry.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Extent<2> box(double x, double y, double x2, double y2) { return {Point<2>{x, y}, Point<2>{x2, y2}}; }
Extent<2> const unit = box(0, 0, 1, 1);

template <class E>
class ExtentOf : public testing::Test {};
using Extents = testing::Types<Extent<1>, Extent<2>, Extent<3>, IExtent<2>, IExtent<3>>;
TYPED_TEST_SUITE(ExtentOf, Extents);

TYPED_TEST(ExtentOf, ObeysTheLawsOfBoxes) {
    using Corner = decltype(TypeParam{}.lo());
    using Number = decltype(TypeParam{}.lo(0));
    BoxLaws<TypeParam, Corner, Number> laws;
    laws.expect(std::numeric_limits<Number>::lowest(), std::numeric_limits<Number>::max());
    if constexpr (requires(TypeParam e) { e.centre(); }) {
        TypeParam const e = laws.box();
        for (unsigned int k = 0; k < 16; ++k)
            for (int i = 0; i < laws.n; ++i) {
                EXPECT_EQ(e.centre()[i], (e.lo(i) + e.hi(i)) / 2);
                EXPECT_EQ(e.corner(k)[i], k >> i & 1 ? e.hi(i) : e.lo(i)) << k << ' ' << i;
            }
        int kept = 0, lost = 0;
        for (int round = 0; round < 2000; ++round) {
            TypeParam const other = laws.box(), before = laws.box(), after = laws.box();
            TypeParam all = other | before;
            bool const exact = all.update(before, after);
            EXPECT_TRUE(exact ? all == (other | after) : (other | after) <= all)
                << "what was given up is still covered";
            ++(exact ? kept : lost);
        }
        EXPECT_TRUE(kept > 100 && lost > 100);
    }
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
