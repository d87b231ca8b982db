#include "orn/geometry/Vector.h"

#include "tests/support/Geometry.h"

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class D>
class VectorOf : public testing::Test {};
using Dimensions = testing::Types<Dimension<1>, Dimension<2>, Dimension<3>, Dimension<4>>;
TYPED_TEST_SUITE(VectorOf, Dimensions);

TYPED_TEST(VectorOf, DoesItsArithmeticByComponents) {
    constexpr int n = TypeParam::value;
    using V = Vector<n>;
    double const ca[] = {7, -3, 0.1, 1e300}, cb[] = {-0.7, 11, 1e-9, 3};
    V const a{ca}, b{cb};
    double packed[4] = {nan, nan, nan, nan};
    a.packToPod(packed);
    double squares = 0, products = 0;
    for (int i = 0; i < n; ++i) {
        EXPECT_TRUE(V{}[i] == 0 && a[i] == ca[i] && packed[i] == ca[i] && (-a)[i] == -ca[i]);
        EXPECT_TRUE((a + b)[i] == ca[i] + cb[i] && (a - b)[i] == ca[i] - cb[i]);
        EXPECT_TRUE((a * 0.3)[i] == ca[i] * 0.3 && (a / 0.3)[i] == ca[i] / 0.3);
        squares += cb[i] * cb[i];
        products += ca[i] * cb[i];
    }
    for (int i = n; i < 4; ++i) EXPECT_TRUE(std::isnan(packed[i]));
    EXPECT_EQ(b.lengthSquared(), squares);
    EXPECT_EQ(b.length(), std::sqrt(squares));
    EXPECT_EQ(dot(a, b), products);
    EXPECT_NEAR(b.unit().length(), 1, 4e-16);
    EXPECT_TRUE(V{}.unit().isNaN());

    V c = a;
    EXPECT_TRUE(&(c += b) == &c && c == a + b);
    EXPECT_TRUE(&(c -= b) == &c && c == a + b - b);
    EXPECT_TRUE(&((c = a) *= 0.3) == &c && c == a * 0.3);
    EXPECT_TRUE(&((c = a) /= 0.3) == &c && c == a / 0.3);

    // The plane's compound results cannot be assigned to; the others can.
    using Result = decltype(std::declval<V&>() += a);
    static_assert(std::is_same_v<Result, std::conditional_t<n == 2, V const&, V&>>);

    for (int i = 0; i < n; ++i) {
        double components[] = {1, 2, 3, 4};
        EXPECT_TRUE(V{components}.isFinite());
        components[i] = -infinity;
        EXPECT_TRUE(!V{components}.isFinite() && !V{components}.isNaN());
        components[i] = nan;
        EXPECT_TRUE(!V{components}.isFinite() && V{components}.isNaN());
    }
}

TEST(Vector, OfThePlaneHasPolarFormAndQuadrant) {
    Vector<2> const v{2, Angle::degrees(120)};
    EXPECT_NEAR(v.x(), -1, 1e-15);
    EXPECT_NEAR(v.y(), 1.7320508075688773, 1e-15);
    EXPECT_NEAR(v.theta().degrees(), 120, 1e-13);
    EXPECT_FALSE((Vector<2>{}.theta().isFinite()));
    EXPECT_TRUE((Vector<2>{1, 2}.perpendicular() == Vector<2>{-2, 1}));
    EXPECT_TRUE((Vector<2>{1, 2}[7] == 2 && Vector<2>{1, 2}[-1] == 2 && Vector<3>{1, 2, 3}[-1] == 3));
    EXPECT_EQ(cross(Vector<2>{1, 2}, Vector<2>{3, 5}), -1);
    static_assert(Vector<1>{0}.x() == 0 && Vector<1>{3u}.x() == 3 && Vector<1>{2.5f}.x() == 2.5);
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
    Angle const north, east = Angle::cosSin(0, 1);
    EXPECT_TRUE((V::altAz(0, Angle::cosSin(0, 0), east) == V{}));
    EXPECT_TRUE((V::altAz(2, Angle::cosSin(0, 1), Angle::cosSin(0, 0)) == V{0, 0, 2}));
    EXPECT_TRUE((V::altAz(2, Angle{}, north) == V{0, 2, 0} && V::altAz(2, Angle{}, east) == V{2, 0, 0}));
    EXPECT_NEAR(((V::altAz(2, Angle::degrees(90), east) - V{0, 0, 2}).length()), 0, 2e-16);
    EXPECT_TRUE((cross(V{1, 0, 0}, V{0, 1, 0}) == V{0, 0, 1}));

    RandomGeometry random{2};
    for (int i = 0; i < 200; ++i) {
        V const v = random.vector<3>(), w = random.vector<3>();
        EXPECT_NEAR((V::altAz(v.length(), v.altitude(), v.azimuth()) - v).length(), 0, 1e-13);
        EXPECT_LE(std::fabs(v.altitude().degrees()), 90);

        // Lagrange's identity, and the product's place at a right angle to both.
        EXPECT_NEAR(cross(v, w).lengthSquared() + dot(v, w) * dot(v, w), v.lengthSquared() * w.lengthSquared(), 1e-9);
        EXPECT_NEAR(dot(cross(v, w), v), 0, 1e-11);
        EXPECT_TRUE(cross(v, w) == -cross(w, v));
    }
}

TEST(Vector, WritesItsComponentsInParentheses) {
    EXPECT_EQ(written(Vector<1>{3}, Vector<2>{1.5, -2}, Vector<3>{1, 2, 0.25}, Vector<4>{1, 2, 3, -4}),
              L"(3)(1.5,-2)(1,2,0.25)(1,2,3,-4)");
}

}
