// Points and vectors of every dimension, of doubles and of ints.
#include "orn/geometry/Hash.h"

#include "tests/support/Geometry.h"

#include <array>
#include <concepts>
#include <iostream>
#include <unordered_set>

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class T>
struct Kind;
template <template <int> class C, int N>
struct Kind<C<N>> {
    using Number = std::remove_cvref_t<decltype(C<N>{}[0])>;
    using Displacement = std::conditional_t<std::integral<Number>, IVector<N>, Vector<N>>;
    static constexpr int n = N;
};

/// Whether an operation on two tuples is the one on their numbers.
template <class T, class U, class Operation>
void expectByComponents(T const& a, U const& b, Operation operation) {
    for (int i = 0; i < Kind<T>::n; ++i) EXPECT_EQ(operation(a, b)[i], operation(a[i], b[i])) << i;
}

/// All sequences of numbers out of five, one of which is there with both signs.
template <class T>
std::vector<T> all() {
    using Number = typename Kind<T>::Number;
    std::vector<T> values;
    for (int k = 0; k < std::pow(6, Kind<T>::n); ++k) {
        Number c[4];
        for (int i = 0, rest = k; i < 4; ++i, rest /= 6)
            c[i] =
                static_cast<Number>(std::array{0.0, -0.0, 1.0, -1.0, 2.0, 1e3}.at(static_cast<std::size_t>(rest) % 6));
        values.emplace_back(c);
    }
    return values;
}

/// Equal ones have one hash, and others hardly ever.
template <class T>
void expectHashed(std::vector<T> const& values, double different) {
    std::unordered_set<T> const set(values.begin(), values.end());
    std::unordered_set<std::size_t> hashes;
    for (T const& value : values) hashes.insert(std::hash<T>{}(value));
    EXPECT_EQ(static_cast<double>(set.size()), different);
    EXPECT_EQ(static_cast<double>(hashes.size()), different);
}

template <class T>
class Coordinates : public testing::Test {};
using All = testing::Types<Point<1>, Point<2>, Point<3>, Vector<1>, Vector<2>, Vector<3>, Vector<4>, IPoint<2>,
                           IPoint<3>, IVector<2>, IVector<3>>;
TYPED_TEST_SUITE(Coordinates, All);

TYPED_TEST(Coordinates, AreReadPackedComparedHashedAndWritten) {
    using T = TypeParam;
    using Number = typename Kind<T>::Number;
    constexpr int n = Kind<T>::n;
    Number const c[] = {7, -3, 0, 11};
    Number packed[] = {99, 99, 99, 99};
    T const value{c};
    value.packToPod(packed);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(packed[i] == (i < n ? c[i] : 99) && (i >= n || (value[i] == c[i] && T{}[i] == 0))) << i;
    // The plane and space give their last coordinate for every other index.
    EXPECT_TRUE(n == 1 || n == 4 || (value[-1] == c[n - 1] && value[99] == c[n - 1]));
    if constexpr (requires { std::wcout << value; }) {
        wchar_t const* const texts[] = {L"(7)", L"(7,-3)", L"(7,-3,0)", L"(7,-3,0,11)"};
        EXPECT_EQ(written(value), texts[n - 1]);
    }
    if constexpr (requires { T::m_origin; }) {
        EXPECT_TRUE(T::origin() == T{} && &T::origin() == &T::m_origin);
    }
    EXPECT_TRUE(value.isFinite() && !value.isNaN());
    expectHashed(all<T>(), std::pow(5, n));
    if constexpr (std::floating_point<Number>) {
        for (int i = 0; i < n; ++i) {
            Number odd[] = {7, -3, 0, 11};
            odd[i] = std::nextafter(odd[i], 100);
            EXPECT_TRUE(T{odd} != value && T{odd} == T{odd}) << i;
            odd[i] = -infinity;
            EXPECT_TRUE(!T{odd}.isFinite() && !T{odd}.isNaN()) << i;
            odd[i] = nan;
            EXPECT_TRUE(!T{odd}.isFinite() && T{odd}.isNaN() && T{odd} != T{odd}) << i;
        }
    }
}

template <class V>
class VectorOf : public testing::Test {};
using Vectors = testing::Types<Vector<1>, Vector<2>, Vector<3>, Vector<4>, IVector<2>, IVector<3>>;
TYPED_TEST_SUITE(VectorOf, Vectors);

TYPED_TEST(VectorOf, DoesItsArithmeticByComponents) {
    using V = TypeParam;
    using Number = typename Kind<V>::Number;
    // The plane's compound results, and those of ints, cannot be assigned to; the others can.
    static_assert(std::same_as<decltype(std::declval<V&>() += V{}), V const&> ==
                  (Kind<V>::n == 2 || std::same_as<V, IVector<Kind<V>::n>>));
    auto const number = [](double x) { return static_cast<Number>(x); };
    Number const ca[] = {number(7.1), -3, 107374182, number(0.1)}, cb[] = {number(-4.7), 11, -107374181, 3};
    V const a{ca}, b{cb};
    expectByComponents(a, b, [](auto x, auto y) { return x + y; });
    expectByComponents(a, b, [](auto x, auto y) { return x += y; });
    expectByComponents(a, b, [](auto x, auto y) { return -x - y; });
    expectByComponents(a, b, [](auto x, auto y) { return x -= y; });
    expectByComponents(a, b, [](auto x, auto y) { return x *= -2, 2 * x + y * 3; });
    if constexpr (std::floating_point<Number>) {
        expectByComponents(a, b, [](auto x, auto y) { return x /= 0.3, x * 0.7 - 0.1 * y / 3; });
        double products = 0;
        for (int i = 0; i < Kind<V>::n; ++i) products += a[i] * b[i];
        EXPECT_TRUE(dot(a, b) == products && b.lengthSquared() == dot(b, b) && b.length() == std::sqrt(dot(b, b)));
        EXPECT_TRUE(b.unit() == b / b.length() && V{}.unit().isNaN());
    } else {
        static_assert(requires(V v) { v * 2, v * 2L, v *= 2; });
        static_assert(!std::invocable<std::multiplies<>, V, double> && !std::invocable<std::multiplies<>, float, V>);
        static_assert(!requires(V v) { v *= 0.5; });
    }
}

template <class P>
class PointOf : public testing::Test {};
using Points = testing::Types<Point<1>, Point<2>, Point<3>, IPoint<2>, IPoint<3>>;
TYPED_TEST_SUITE(PointOf, Points);

TYPED_TEST(PointOf, IsMovedByVectorsAndMeasuredAgainstPoints) {
    using P = TypeParam;
    using Number = typename Kind<P>::Number;
    using V = typename Kind<P>::Displacement;
    auto const number = [](double x) { return static_cast<Number>(x); };
    Number const ca[] = {7, -3, number(0.1)}, cb[] = {number(-4.7), 11, number(1e-9)};
    P const a{ca}, b{cb};
    V const v{cb};
    expectByComponents(a, v, [](auto x, auto y) { return x += y; });
    expectByComponents(a, v, [](auto x, auto y) { return x -= y; });
    if constexpr (std::floating_point<Number>) {
        expectByComponents(a, b, [](auto x, auto y) { return x - y; });
        expectByComponents(a, v, [](auto x, auto y) { return x - y; });
        expectByComponents(a, v, [](auto x, auto y) { return x + y; });
        EXPECT_TRUE(v + a == a + v && interp(a, b, 0) == a && interp(a, b, 1) == b &&
                    interp(a, b, 0.5) == midpoint(a, b));
        EXPECT_TRUE(interp(P{}, b, 2) == P{} + v * 2) << "beyond the ends it extrapolates";
        // Differences of zeros have the first one's sign on the line, and none in the plane and in space.
        double const minus[] = {-0.0, -0.0, -0.0};
        for (int i = 0; i < Kind<P>::n; ++i)
            for (double const zero : {(P{minus} - P{})[i], (P{minus} - V{})[i]})
                EXPECT_EQ(std::signbit(zero), Kind<P>::n == 1);
    }
}

TEST(Vector, OfThePlaneHasPolarFormAndQuadrant) {
    static_assert(Vector<1>{0}.x() == 0 && Vector<1>{3u}.x() == 3 && Vector<1>{2.5f}.x() == 2.5);
    static_assert(Point<1>{0}.x() == 0 && IPoint<2>{1, 2}.y() == 2 && IPoint<3>{1, 2, 3}.z() == 3 &&
                  IVector<3>{1, 2, 3}.y() == 2);
    Vector<2> const v{2, Angle::degrees(120)};
    expectNear(Point<2>{} + v, Point<2>{-1, 1.7320508075688773}, 1e-15);
    EXPECT_NEAR(v.theta().degrees(), 120, 1e-13);
    EXPECT_FALSE((Vector<2>{}.theta().isFinite()));
    EXPECT_TRUE((Vector<2>{1, 2}.perpendicular() == Vector<2>{-2, 1}));
    EXPECT_EQ(cross(Vector<2>{1, 2}, Vector<2>{3, 5}), -1);
    EXPECT_EQ(Vector<1>{-2.5}.unit().x(), -1);
    struct {
        double x, y;
        int quadrant;
    } const cases[] = {{1, 1, 1},  {-1, 1, 2}, {-1, -1, 3},  {1, -1, 4},  {0, 0, 1},     {-0.0, 1, 1},
                       {-1, 0, 2}, {0, -1, 4}, {1, -0.0, 1}, {nan, 1, 2}, {nan, nan, 3}, {1, nan, 4}};
    for (auto const& c : cases) EXPECT_EQ((Vector<2>{c.x, c.y}.quadrant()), c.quadrant) << c.x << ',' << c.y;
}

TEST(Vector, OfSpaceHasAltitudeAndBearing) {
    using V = Vector<3>;
    Angle const none = Angle::cosSin(0, 0), east = Angle::cosSin(0, 1), up = east;
    EXPECT_TRUE((V::altAz(0, none, east) == V{} && V::altAz(2, up, none) == V{0, 0, 2}));
    EXPECT_TRUE((V::altAz(2, {}, {}) == V{0, 2, 0} && V::altAz(2, {}, east) == V{2, 0, 0}));
    EXPECT_TRUE((cross(V{1, 0, 0}, V{0, 1, 0}) == V{0, 0, 1}));
    RandomGeometry random{2};
    for (int i = 0; i < 200; ++i) {
        V const v = random.vector<3>(), w = random.vector<3>();
        expectNear(Point<3>{} + V::altAz(v.length(), v.altitude(), v.azimuth()), Point<3>{} + v, 1e-13);
        EXPECT_LE(std::fabs(v.altitude().degrees()), 90);
        // Lagrange's identity, and the product's place at a right angle to both.
        EXPECT_NEAR(cross(v, w).lengthSquared() + dot(v, w) * dot(v, w), v.lengthSquared() * w.lengthSquared(), 1e-9);
        EXPECT_NEAR(dot(cross(v, w), v), 0, 1e-11);
        EXPECT_TRUE(cross(v, w) == -cross(w, v));
    }
}

TEST(Hash, OfArcsGoesWithAnEqualityThatIsExact) {
    expectHashed<ORN::Arc<2>>({{{0, 1}, 0.0, {2, -0.0}}, {{-0.0, 1}, -0.0, {2, 0}}}, 1);
    Vector<3> const axis{0, 1, 0}, turned{-0.0, -1, 0};
    expectHashed<ORN::Arc<3>>({{{0, 1, 0}, 1, axis, {2, 1, 0}}, {{-0.0, 1, 0}, 1, -turned, {2, 1, -0.0}}}, 1);
    expectHashed<ORN::Arc<3>>({{{0, 1, 0}, 1, axis, {2, 1, 0}}, {{0, 1, 0}, 1, turned, {2, 1, 0}}}, 2);
    EXPECT_FALSE((ORN::Arc<2>{{0, 0}, nan, {1, 0}} == ORN::Arc<2>{{0, 0}, nan, {1, 0}}));
}

}
