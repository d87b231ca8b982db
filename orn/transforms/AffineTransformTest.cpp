// What the two kinds of affine transforms are made from, and what they tell of themselves.
#include "orn/transforms/AffineTransform.h"

#include "tests/support/Thrown.h"
#include "tests/support/Transforms.h"

namespace {

using transforms::Random;
template <int N>
using Uniform = UniformTransform<N>;
template <int N>
using Affine = NonUniformTransform<N>;

constexpr double half = 0.70710678118654752440;  // √½, rounded

template <int N>
struct Case {
    Affine<N> t;
    Point<N> from, to;
};

template <int N>
void expectMapped(std::initializer_list<Case<N>> cases) {
    for (Case<N> const& c : cases) {
        SCOPED_TRACE(::testing::PrintToString(&c - cases.begin()));
        expectNear(c.from * c.t, c.to, 5e-15);
    }
}

TEST(AffineTransform, MapsThePlaneAsItsMakerSays) {
    auto const turn = [](double degrees) { return Uniform<2>::rotation(Angle::degrees(degrees)); };
    auto const mirror = [](Vector<2> const& v, Point<2> const& p) { return Uniform<2>::mirror(ORN::Line<2>{v, p}); };
    expectMapped<2>({
        {turn(90), {1, 0}, {0, 1}},
        {turn(-90), {1, 0}, {0, -1}},
        {turn(30), {2, 0}, {1.7320508075688772935, 1}},
        {mirror({1, 0}, {0, 1}), {3, 5}, {3, -3}},
        {mirror({half, half}, {0, 0}), {3, 5}, {5, 3}},
        // A direction that is not of unit length is taken as it is: n = (0, 2), I − 2·n·nᵀ = diag(1, −7).
        {mirror({2, 0}, {0, 0}), {3, 1}, {3, -7}},
        {Affine<2>::scale(2, -1), {3, 5}, {6, -5}},
        {Affine<2>::axes({2, 3}, {4, 5}), {1, 10}, {42, 53}},
        // x ↦ 2x + 6 has the inverse x ↦ x/2 − 3.
        {(Affine<2>::scale(2, 4) *= Uniform<2>::translation({6, 8})).inverse(), {10, 20}, {2, 3}},
    });
}

TEST(AffineTransform, MapsSpaceAsItsMakerSays) {
    // Right-handed, about an axis of any length.
    auto const turn = [](double degrees, Vector<3> const& axis) {
        return Uniform<3>::rotation(Angle::degrees(degrees), axis);
    };
    expectMapped<3>({
        {turn(90, {0, 0, 2}), {1, 0, 5}, {0, 1, 5}},
        {turn(120, {1, 1, 1}), {1, 2, 3}, {3, 1, 2}},
        {turn(180, {1, 1, 0}), {1, 0, 1}, {0, 1, -1}},
        {Uniform<3>::mirror(Plane{Vector<3>{0, 0, 2}, Point<3>{7, 8, 1}}), {3, 4, 5}, {3, 4, -3}},
        {Affine<3>::scale(2, -1, 0.5), {3, 5, 7}, {6, -5, 3.5}},
        {Affine<3>::axes({1, 2, 3}, {4, 5, 6}, {7, 8, 9}), {1, 10, 100}, {741, 852, 963}},
    });
    EXPECT_TRUE((Point<3>{1, 2, 3} * turn(30, {0, 0, 0})).isNaN());
    EXPECT_FALSE((Point<3>{1, 1, 1} / Affine<3>::scale(1, 0, 1)).isFinite()) << "a singular one has no way back";
}

TEST(AffineTransform, TellsScaleRotationAndMirroring) {
    EXPECT_DOUBLE_EQ(Uniform<3>::scale(-2).scale(), -2);
    EXPECT_EQ(Uniform<2>::scale(-2).scale(), 2);  // half a turn
    EXPECT_TRUE(std::isnan(Uniform<2>::mirror(ORN::Line<2>{{1, 0}, {0, 1}}).scale()));
    Random<2> random{11};
    for (int round = 0; round < 100; ++round) {
        double const scale = random.number(0.1, 10), degrees = random.number(-179, 179);
        auto t = Uniform<2>::scale(scale);
        (t *= Uniform<2>::rotation(Angle::degrees(degrees))) *= Uniform<2>::translation(random.vector());
        EXPECT_NEAR(t.scale(), scale, 1e-14);
        EXPECT_NEAR(t.rotation().degrees(), degrees, 1e-13);
    }
    Vector<3> axis;
    EXPECT_EQ(thrown([&] { Uniform<3>{}.rotation(axis); }), L"NotImplemented: UniformTransform<3>::rotation");

    // A negative determinant mirrors; that of parallel axes is 0.
    for (Vector<3> const& z : {Vector<3>{0, 0, -1}, Vector<3>{0, 0, 1}, Vector<3>{}}) {
        EXPECT_EQ(Affine<3>::axes({0, 1, 0}, {1, 0, 0}, z).mirroring(), z.z() > 0);
        EXPECT_EQ(Affine<2>::axes({0, 1}, {z.z(), 5}).mirroring(), z.z() > 0);
    }
}

TEST(AffineTransform, MirrorsAndFramesOfSpaceStayRigid) {
    Random<3> random{13};
    for (int round = 0; round < 100; ++round) {
        Plane const plane{random.vector(), random.point()};
        auto const mirror = Uniform<3>::mirror(plane);
        Point<3> const p = random.point();
        EXPECT_TRUE(mirror.mirroring());
        expectNear(p * mirror * mirror, p, 1e-13);
        EXPECT_NEAR(plane.distanceTo(p * mirror), -plane.distanceTo(p), 1e-13);
        expectNear(plane.pointOnPlane() * mirror, plane.pointOnPlane(), 1e-14);

        Vector<3> const u = random.vector(), v = random.vector();
        for (auto const& frame : {Uniform<3>::xyAxes(u, v), Uniform<3>::yzAxes(u, v), Uniform<3>::zxAxes(u, v)}) {
            EXPECT_NEAR(frame.scale(), 1, 1e-14);  // right-handed, too
            Matrix<4> const h = frame.homogeneous();
            expectNear(h * h.transpose(), Matrix<4>{}, 1e-14);
        }
        // In the frame u lies on the first axis and v in the first two, on the positive side of the second.
        auto const frame = Uniform<3>::yzAxes(u, v);
        expectNear(Point<3>{} + u / frame, Point<3>{0, u.length(), 0}, 1e-13);
        EXPECT_NEAR((v / frame).x(), 0, 1e-13);
        EXPECT_GT((v / frame).z(), 0);

        Uniform<3> t = random.uniform(), other = random.uniform();
        double const scale = t.scale() * other.scale();
        EXPECT_NEAR((t *= other).scale(), scale, 1e-13);
        expectNear((t *= t.inverse()).homogeneous(), Matrix<4>{}, 1e-13);
    }
    EXPECT_TRUE((Point<3>{1, 2, 3} * Uniform<3>::xyAxes({2, 0, 0}, {2, 0, 0})).isNaN());
}

TEST(AffineTransform, IsWrittenByItsKind) {
    double const rows[3][2] = {{1, 0.5}, {0, -2}, {3, 4}};
    EXPECT_EQ(written(Affine<2>::createFromPod(rows)), L"(3,4)+[1,0.5/0,-2]");
    EXPECT_EQ(written(Affine<3>::scale(1, 2, 3)), L"(0,0,0)+[1,0,0/0,2,0/0,0,3]");
    auto t = Uniform<2>::scale(2);
    (t *= Uniform<2>::rotation(Angle::degrees(90))) *= Uniform<2>::translation({3, -4.5});
    EXPECT_EQ(written(t, Uniform<2>{}), L"(3,-4.5)*2~90(0,0)*1~0");
    EXPECT_EQ(written(Uniform<3>::translation({1, 2, 3})), L"UniformTfm[[1,0,0/0,1,0/0,0,1] + (1,2,3)]");
    Vector<3> const a{2, 0, 0}, b{1, 1, 0};
    EXPECT_EQ(written(Uniform<3>::xyAxes(a, b)), L"UniformTfm[[1,0,0/0,1,0/0,0,1] + (0,0,0)]");
    EXPECT_EQ(written(Uniform<3>::yzAxes(a, b)), L"UniformTfm[[0,0,1/1,0,0/0,1,0] + (0,0,0)]");
    EXPECT_EQ(written(Uniform<3>::zxAxes(a, b)), L"UniformTfm[[0,1,0/0,0,1/1,0,0] + (0,0,0)]");
}

}
