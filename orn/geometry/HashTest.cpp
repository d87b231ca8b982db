#include "orn/geometry/Hash.h"

#include "tests/support/Geometry.h"

#include <unordered_set>

namespace {

/// All sequences of n numbers out of five, one of which is there with both signs.
template <typename T, int n, typename Number>
std::vector<T> all() {
    std::vector<T> values;
    Number const some[] = {0, static_cast<Number>(-0.0), 1, -1, 2, 1000};
    int count = 1;
    for (int i = 0; i < n; ++i) count *= 6;
    for (int k = 0; k < count; ++k) {
        Number c[n];
        for (int i = 0, rest = k; i < n; ++i, rest /= 6) c[i] = some[rest % 6];
        values.emplace_back(c);
    }
    return values;
}

/// Equal ones have one hash, and others hardly ever.
template <typename T>
void expectHashed(std::vector<T> const& values, std::size_t different) {
    std::unordered_set<T> const set(values.begin(), values.end());
    EXPECT_EQ(set.size(), different);
    std::unordered_set<std::size_t> hashes;
    for (T const& value : values) {
        EXPECT_TRUE(value == value && *set.find(value) == value);
        hashes.insert(std::hash<T>{}(value));
    }
    EXPECT_EQ(hashes.size(), different);
}

TEST(Hash, IsOneForEqualValues) {
    expectHashed(all<Point<1>, 1, double>(), 5);
    expectHashed(all<Point<3>, 3, double>(), 125);
    expectHashed(all<Vector<1>, 1, double>(), 5);
    expectHashed(all<Vector<2>, 2, double>(), 25);
    expectHashed(all<Vector<3>, 3, double>(), 125);
    expectHashed(all<Vector<4>, 4, double>(), 625);
    expectHashed(all<IPoint<3>, 3, int>(), 125);
    expectHashed(all<IVector<2>, 2, int>(), 25);

    using P = Point<3>;
    std::vector<ORN::Arc<2>> flat;
    std::vector<ORN::Arc<3>> spatial;
    for (Vector<4> const& v : all<Vector<4>, 4, double>())
        flat.emplace_back(Point<2>{v[0], v[1]}, v[2], Point<2>{v[3], 7});
    for (Vector<3> const& v : all<Vector<3>, 3, double>())
        for (double const z : {1.0, -1.0}) spatial.emplace_back(P{v[0], 0, 1}, v[1], Vector<3>{0, 0, z}, P{2, v[2], 0});
    expectHashed(flat, 625);
    expectHashed(spatial, 250);
}

TEST(Hash, GoesWithAnEqualityThatIsExact) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE((Vector<2>{nan, 0} == Vector<2>{nan, 0} || Vector<4>{0, 0, 0, nan} == Vector<4>{0, 0, 0, nan}));
    EXPECT_FALSE((Vector<3>{1, 2, 3} == Vector<3>{1, 2, std::nextafter(3, 4)}));
    EXPECT_FALSE((ORN::Arc<2>{{0, 0}, nan, {1, 0}} == ORN::Arc<2>{{0, 0}, nan, {1, 0}}));
    EXPECT_TRUE((2.5 * Vector<3>{1, 2, 3} == Vector<3>{2.5, 5, 7.5} && 2 * Vector<1>{1.5} == Vector<1>{3.0}));
    EXPECT_TRUE((0.5 * Vector<2>{3, 4} == Vector<2>{1.5, 2} && 3 * Vector<4>{1, 2, 3, 4} == Vector<4>{3, 6, 9, 12}));
    EXPECT_TRUE((3 * IVector<2>{1, 2} == IVector<2>{3, 6} && 3 * IVector<3>{1, 2, 3} == IVector<3>{3, 6, 9}));
}

}
