#include "orn/geometry/Extent.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>
#include <type_traits>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double most = 1.7976931348623157e308;

template <int N>
struct Dimension {
    static constexpr int value = N;
};

template <class D>
class ExtentOf : public testing::Test {
protected:
    // Few coordinates, so that bounds often coincide.
    Point<D::value> point() {
        double c[3];
        for (double& x : c) x = small_(random_);
        return Point<D::value>{c};
    }
    Extent<D::value> box() { return {point(), point()}; }

    static bool exactly(Extent<D::value> const& e, double lo, double hi) {
        for (int i = 0; i < D::value; ++i)
            if (e.lo(i) != lo || e.hi(i) != hi) return false;
        return true;
    }

private:
    std::mt19937 random_{3};
    std::uniform_int_distribution<int> small_{-3, 3};
};
using Dimensions = testing::Types<Dimension<1>, Dimension<2>, Dimension<3>>;
TYPED_TEST_SUITE(ExtentOf, Dimensions);

TYPED_TEST(ExtentOf, HasAnEmptyAndAFullValue) {
    using E = Extent<TypeParam::value>;
    static_assert(std::is_trivially_copyable_v<E>);
    EXPECT_TRUE(this->exactly(E{}, most, -most));
    EXPECT_TRUE(this->exactly(E::nothing(), most, -most));
    EXPECT_TRUE(this->exactly(E::everything(), -most, most));
    EXPECT_TRUE(E{}.degenerate());
    EXPECT_FALSE(E::everything().degenerate());
    EXPECT_EQ(&E::nothing(), &E::m_nothing);
    EXPECT_EQ(&E::everything(), &E::m_everything);
}

TYPED_TEST(ExtentOf, ObeysTheLawsOfBoxes) {
    using E = Extent<TypeParam::value>;
    for (int round = 0; round < 2000; ++round) {
        E const a = this->box(), b = this->box();
        auto const p = this->point();

        E const both = a & b, either = a | b;
        EXPECT_EQ(a.contains(p) && b.contains(p), !both.degenerate() && both.contains(p));
        EXPECT_TRUE(!a.contains(p) || either.contains(p));
        EXPECT_EQ(a.contains(p), a + p == a);
        EXPECT_TRUE((a + p).contains(p));
        EXPECT_TRUE(a.contains(a.lo()) && a.contains(a.hi()) && a.contains(a.centre()));

        EXPECT_EQ(a <= b, (a | b) == b);
        EXPECT_EQ(a <= b, (a & b) == a);
        EXPECT_EQ(a <= b, b >= a);
        EXPECT_EQ(a < b, a <= b && a != b);
        EXPECT_EQ(a > b, b < a);
        EXPECT_TRUE(a <= a && a >= a && !(a < a) && !(a > a));

        // A box that an intersection empties is the one empty value.
        EXPECT_TRUE(!both.degenerate() || both == E::nothing());
        EXPECT_TRUE((E::nothing() | a) == a && (a | E::nothing()) == a);
        EXPECT_TRUE((E::everything() & a) == a && (a & E::nothing()) == E::nothing());
        EXPECT_TRUE(E::nothing() + p == (E{p, p}));
        EXPECT_FALSE((E{p, p}.degenerate()));

        E c = a;
        EXPECT_EQ(&(c += p), &c);
        EXPECT_TRUE(c == a + p);
        EXPECT_EQ(&((c = a) |= b), &c);
        EXPECT_TRUE(c == either);
        EXPECT_EQ(&((c = a) &= b), &c);
        EXPECT_TRUE(c == both);
    }
}

TYPED_TEST(ExtentOf, UpdatesTheUnionOfItsParts) {
    using E = Extent<TypeParam::value>;
    int kept = 0, lost = 0;
    for (int round = 0; round < 2000; ++round) {
        E const other = this->box(), before = this->box(), after = this->box();
        E all = other | before;
        if (all.update(before, after)) {
            EXPECT_TRUE(all == (other | after));
            ++kept;
        } else {
            EXPECT_TRUE((other | after) <= all) << "what was given up is still covered";
            ++lost;
        }
    }
    EXPECT_GT(kept, 100);
    EXPECT_GT(lost, 100);
}

TYPED_TEST(ExtentOf, IsPackedAsRowsAndReadUnordered) {
    using E = Extent<TypeParam::value>;
    constexpr int n = TypeParam::value;
    double rows[2][n], packed[2][n];
    for (int i = 0; i < n; ++i) rows[0][i] = 5 + i, rows[1][i] = 1 - i;
    E const e{rows};
    EXPECT_TRUE(e.degenerate());
    e.packToPod(packed);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(packed[0][i], 5 + i);
        EXPECT_EQ(packed[1][i], 1 - i);
        EXPECT_EQ(e.lo()[i], 5 + i);
        EXPECT_EQ(e.hi()[i], 1 - i);
        EXPECT_EQ(e.centre()[i], 3);
    }
    for (unsigned int k = 0; k < 16; ++k)
        for (int i = 0; i < n; ++i) EXPECT_EQ(e.corner(k)[i], k >> i & 1 ? 1 - i : 5 + i) << k << ' ' << i;
}

TEST(Extent, IsOrderedFromAnyTwoCorners) {
    Extent<2> const e{Point<2>{3, 1}, Point<2>{1, 2}};
    EXPECT_TRUE((e.lo() == Point<2>{1, 1} && e.hi() == Point<2>{3, 2}));

    Extent<2> const f{Point<2>{nan, 1}, Point<2>{4, nan}};
    EXPECT_EQ(f.lo(0), 4);
    EXPECT_TRUE(std::isnan(f.hi(0)));
    EXPECT_TRUE(std::isnan(f.lo(1)));
    EXPECT_EQ(f.hi(1), 1);
}

TEST(Extent, LetsNaNPass) {
    Extent<2> const unit{Point<2>{0, 0}, Point<2>{1, 1}};
    EXPECT_TRUE((unit.contains(Point<2>{nan, 0.5})));
    EXPECT_FALSE((unit.contains(Point<2>{nan, 2})));
    EXPECT_TRUE((unit + Point<2>{nan, nan} == unit));
    Extent<2> const bad{Point<2>{nan, nan}, Point<2>{nan, nan}};
    EXPECT_FALSE(bad == bad);
    EXPECT_TRUE(bad <= unit && unit <= bad) << "nothing about NaN is outside";
}

TEST(Extent, IntersectionIsEmptyAsSoonAsOneAxisIs) {
    Extent<2> const a{Point<2>{0, 0}, Point<2>{1, 1}};
    EXPECT_TRUE((a & Extent<2>{Point<2>{0.5, 2}, Point<2>{2, 3}}) == Extent<2>::nothing());
    EXPECT_TRUE((a & Extent<2>{Point<2>{1, 1}, Point<2>{2, 3}}) == Extent<2>(Point<2>{1, 1}, Point<2>{1, 1}));
    EXPECT_TRUE((a & Extent<2>{Point<2>{2, nan}, Point<2>{3, nan}}) == Extent<2>::nothing());
}

TEST(Extent, DilatesAndShrinks) {
    Extent<2> const unit{Point<2>{0, 0}, Point<2>{1, 1}};
    EXPECT_TRUE(unit.dilate(2) == Extent<2>(Point<2>{-2, -2}, Point<2>{3, 3}));
    EXPECT_TRUE(unit.dilate(-0.5) == Extent<2>(Point<2>{0.5, 0.5}, Point<2>{0.5, 0.5}));
    EXPECT_TRUE(unit.dilate(-1) == Extent<2>::nothing());
    EXPECT_TRUE((Extent<2>{Point<2>{0, 0}, Point<2>{9, 1}}.dilate(-1)) == Extent<2>::nothing());
}

TEST(Extent, UpdateTakesEveryBoundEvenAfterOneIsLost) {
    Extent<2> e{Point<2>{0, 0}, Point<2>{10, 10}};
    EXPECT_TRUE(e.update(Extent<2>{Point<2>{1, 1}, Point<2>{2, 2}}, Extent<2>{Point<2>{-1, 1}, Point<2>{2, 12}}));
    EXPECT_TRUE(e == Extent<2>(Point<2>{-1, 0}, Point<2>{10, 12}));
    EXPECT_FALSE(e.update(Extent<2>{Point<2>{-1, 1}, Point<2>{2, 12}}, Extent<2>{Point<2>{0, -5}, Point<2>{20, 13}}));
    EXPECT_TRUE(e == Extent<2>(Point<2>{-1, -5}, Point<2>{20, 13}));
}

TEST(Extent, WritesItsCorners) {
    std::wostringstream os;
    os << Extent<1>{Point<1>{0}, Point<1>{1}} << L' ' << Extent<2>{Point<2>{0, 0}, Point<2>{1, 1}} << L' '
       << Extent<3>{Point<3>{0, 0, -1.5}, Point<3>{1, 1, 2}} << L' ' << Extent<3>{};
    EXPECT_EQ(os.str(), L"(0):(1) (0,0):(1,1) (0,0,-1.5):(1,1,2) degenerate");
}

}
