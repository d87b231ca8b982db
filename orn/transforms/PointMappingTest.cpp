#include "orn/transforms/PointMapping.h"

#include "tests/support/Transforms.h"

#include <span>
#include <stdexcept>

namespace {

using transforms::Random;

template <class D>
class MappingOfDimension : public testing::Test {};
TYPED_TEST_SUITE(MappingOfDimension, PlaneAndSpace);

template <int N>
std::vector<Point<N>> points(std::size_t count) {
    AnyGeometry random{61};
    std::vector<Point<N>> all;
    while (all.size() < count) all.push_back(random.point<N>());
    return all;
}

TYPED_TEST(MappingOfDimension, MapsAsOneByOne) {
    constexpr int N = TypeParam::value;
    Random<N> random{61};
    auto all = random.oneOfEach();
    all.emplace_back("identity", UniformTransform<N>{}.clone());
    all.emplace_back("singular", UniformTransform<N>::scale(0).clone());
    all.emplace_back("eye among the points", PerspectiveTransform<N>{}.clone());
    for (auto const& [name, t] : all)
        for (std::size_t const count : {0U, 1U, 2U, 3U, 7U, 256U, 257U, 1000U})
            for (int const offsets : {0, 1, 2, 3}) {
                SCOPED_TRACE(name + ", " + std::to_string(count) + ", " + std::to_string(offsets));
                std::vector<Point<N>> same = points<N>(count), sameBack = same;
                // On addresses that are multiples of 16, or only of 8.
                std::vector<double> from(count * N + 1), to = from;
                std::span const in{reinterpret_cast<Point<N>*>(from.data() + offsets % 2), count};
                std::span const out{reinterpret_cast<Point<N>*>(to.data() + offsets / 2), count};
                std::copy(same.begin(), same.end(), in.begin());
                mapPoints(*t, in, out);
                mapPoints(*t, same, same);
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_TRUE(sameBits(out[i], in[i] * *t) && sameBits(same[i], in[i] * *t)) << i;
                unmapPoints(*t, in, out);
                unmapPoints(*t, sameBack, sameBack);
                for (std::size_t i = 0; i < count; ++i)
                    ASSERT_TRUE(sameBits(out[i], in[i] / *t) && sameBits(sameBack[i], in[i] / *t)) << i;
            }
}

// Large results are written past the caches.
TEST(PointMapping, MapsVeryManyAsInPieces) {
    auto const t = Random<2>{65}.nonUniform();
    constexpr std::size_t count = 500'003, piece = 100'001;
    std::vector<double> from(2 * count + 1), whole(from), pieces(from);
    for (std::size_t i = 0; i < from.size(); ++i) from[i] = 0.37 * static_cast<double>(i);
    for (int const offset : {0, 1}) {
        auto const points = [=](std::vector<double>& v) {
            return std::span{reinterpret_cast<Point<2>*>(&v[0] + offset), count};
        };
        using Map = void(Transform<2> const&, std::span<Point<2> const>, std::span<Point<2>>);
        for (Map* const map : {static_cast<Map*>(mapPoints), static_cast<Map*>(unmapPoints)}) {
            map(t, points(from), points(whole));
            for (std::size_t at = 0; at < count; at += piece) {
                std::size_t const some = std::min(piece, count - at);
                map(t, points(from).subspan(at, some), points(pieces).subspan(at, some));
            }
            EXPECT_TRUE(whole == pieces) << offset;
        }
    }
}

/// The library's own in all but its class, which is called where that is computed in place.
template <int N>
class Called final : public NonUniformTransform<N> {
public:
    explicit Called(AffineTransform<N> const& t) : NonUniformTransform<N>{t} {}
};

TYPED_TEST(MappingOfDimension, MapsInPlaceAsByCall) {
    constexpr int N = TypeParam::value;
    Random<N> random{64};
    auto const expectSame = [](Point<N> const& p, AffineTransform<N> const& t) {
        Called<N> const called{t};
        Point<N> moved = p;
        EXPECT_TRUE(sameBits(p * t, p * called) && sameBits(moved *= t, p * called));
        Vector<N> const v = p - Point<N>{};
        EXPECT_TRUE(sameBits(Point<N>{} + v * t, Point<N>{} + v * called));
    };
    for (Point<N> const& p : points<N>(1000)) {
        expectSame(p, random.uniform());
        expectSame(p, random.nonUniform());
    }
}

TYPED_TEST(MappingOfDimension, RefusesUnequalLengthsAndOverlapsAndWritesNothing) {
    constexpr int N = TypeParam::value;
    std::vector<Point<N>> all(9);
    std::span<Point<N>> const in{all.data() + 3, 3};
    auto const t = UniformTransform<N>::translation(Random<N>{62}.vector());
    auto const refused = [&](std::size_t at, std::size_t count) {
        EXPECT_THROW(mapPoints(t, in, std::span{all.data() + at, count}), std::logic_error) << at << ' ' << count;
        EXPECT_THROW(unmapPoints(t, in, std::span{all.data() + at, count}), std::logic_error) << at << ' ' << count;
        for (Point<N> const& p : all) EXPECT_EQ(p, Point<N>{});
    };
    for (std::size_t const count : {0U, 2U, 4U}) refused(3, count);
    for (std::size_t const at : {1U, 2U, 4U, 5U}) refused(at, 3);
    for (std::size_t const at : {0U, 6U}) mapPoints(t, in, std::span{all.data() + at, 3});
    EXPECT_TRUE(all[2] == Point<N>{} * t && all[3] == Point<N>{} && all[8] == all[0]);
}

/// Scales as its base, then does something of its own: its data do not tell where points go.
class Rounding final : public UniformTransform<2> {
public:
    explicit Rounding(UniformTransform<2> const& t) : UniformTransform<2>{t} {}

protected:
    using UniformTransform<2>::preMultiply;
    Point<2> preMultiply(Point<2> const& p) const override {
        Point<2> const exact = UniformTransform<2>::preMultiply(p);
        return {std::round(exact.x()), std::round(exact.y())};
    }
};

TEST(PointMapping, AsksAnApplicationsOwnClassForEveryPoint) {
    Rounding const rounding{UniformTransform<2>::scale(1.3)};
    std::vector<Point<2>> points{{1, 2}, {3, -4}};
    mapPoints(rounding, points, points);
    EXPECT_EQ(points[0], (Point<2>{1, 3}));
    EXPECT_EQ(points[1], (Point<2>{4, -5}));
}

}
