#include "orn/transforms/UniformTransform.h"

#include "tests/support/Thrown.h"
#include "tests/support/Transforms.h"

namespace {

using transforms::Random;

constexpr double half = 0.70710678118654752440;  // √½, rounded

TEST(UniformTransform, PlaneRotationsTurnAnticlockwise) {
    struct Case {
        double degrees;
        Point<2> from, to;
    };
    for (Case const& c :
         {Case{90, {1, 0}, {0, 1}}, Case{90, {0, 1}, {-1, 0}}, Case{-90, {1, 0}, {0, -1}}, Case{180, {1, 2}, {-1, -2}},
          Case{45, {1, 0}, {half, half}}, Case{30, {2, 0}, {1.7320508075688772935, 1}}})
        expectNear(c.from * UniformTransform<2>::rotation(Angle::degrees(c.degrees)), c.to, 1e-15);
}

TEST(UniformTransform, SpaceRotationsAreRightHandedAboutAnAxisOfAnyLength) {
    struct Case {
        double degrees;
        Vector<3> axis;
        Point<3> from, to;
    };
    for (Case const& c : {Case{90, {0, 0, 2}, {1, 0, 5}, {0, 1, 5}}, Case{90, {3, 0, 0}, {5, 1, 0}, {5, 0, 1}},
                          Case{90, {0, 0.5, 0}, {0, 5, 1}, {1, 5, 0}}, Case{120, {1, 1, 1}, {1, 2, 3}, {3, 1, 2}},
                          Case{180, {1, 1, 0}, {1, 0, 1}, {0, 1, -1}}})
        expectNear(c.from * UniformTransform<3>::rotation(Angle::degrees(c.degrees), c.axis), c.to, 5e-15);
    EXPECT_TRUE((Point<3>{1, 2, 3} * UniformTransform<3>::rotation(Angle::degrees(30), {0, 0, 0})).isNaN());
}

TEST(UniformTransform, ScaleAndRotationAreReadBack) {
    EXPECT_DOUBLE_EQ(UniformTransform<3>::scale(-2).scale(), -2);
    EXPECT_EQ(UniformTransform<2>::scale(-2).scale(), 2);  // half a turn
    EXPECT_TRUE(std::isnan(UniformTransform<2>::mirror(ORN::Line<2>{{1, 0}, {0, 1}}).scale()));
    EXPECT_DOUBLE_EQ(UniformTransform<2>::rotation(Angle::degrees(90)).rotation().degrees(), 90);

    Random<2> random{11};
    for (int round = 0; round < 100; ++round) {
        double const scale = random.number(0.1, 10), degrees = random.number(-179, 179);
        auto t = UniformTransform<2>::scale(scale);
        t *= UniformTransform<2>::rotation(Angle::degrees(degrees));
        t *= UniformTransform<2>::translation(random.vector());
        EXPECT_NEAR(t.scale(), scale, 1e-14);
        EXPECT_NEAR(t.rotation().degrees(), degrees, 1e-13);
    }
}

TEST(UniformTransform, RotationOfSpaceIsNotImplemented) {
    Vector<3> axis;
    EXPECT_EQ(thrown([&] { UniformTransform<3>{}.rotation(axis); }), L"NotImplemented: UniformTransform<3>::rotation");
}

TEST(UniformTransform, MirrorsInALine) {
    EXPECT_EQ((Point<2>{3, 5} * UniformTransform<2>::mirror(ORN::Line<2>{{1, 0}, {0, 1}})), (Point<2>{3, -3}));
    expectNear(Point<2>{3, 5} * UniformTransform<2>::mirror(ORN::Line<2>{{half, half}, {0, 0}}), Point<2>{5, 3}, 1e-15);
    // A direction that is not of unit length is taken as it is: n = (0, 2), I − 2·n·nᵀ = diag(1, −7).
    EXPECT_EQ((Point<2>{3, 1} * UniformTransform<2>::mirror(ORN::Line<2>{{2, 0}, {0, 0}})), (Point<2>{3, -7}));
}

TEST(UniformTransform, MirrorsInAPlane) {
    Plane const plane{Vector<3>{0, 0, 2}, Point<3>{7, 8, 1}};
    EXPECT_EQ((Point<3>{3, 4, 5} * UniformTransform<3>::mirror(plane)), (Point<3>{3, 4, -3}));
    Random<3> random{12};
    for (int round = 0; round < 100; ++round) {
        Plane const any{random.vector(), random.point()};
        auto const t = UniformTransform<3>::mirror(any);
        Point<3> const p = random.point();
        EXPECT_TRUE(t.mirroring());
        expectNear(p * t * t, p, 1e-13);
        EXPECT_NEAR(any.distanceTo(p * t), -any.distanceTo(p), 1e-13);
        expectNear(any.pointOnPlane() * t, any.pointOnPlane(), 1e-14);
    }
}

TEST(UniformTransform, FramesFromTwoVectors) {
    Vector<3> const a{2, 0, 0};
    Vector<3> const b{1, 1, 0};
    EXPECT_EQ(written(UniformTransform<3>::xyAxes(a, b)), L"UniformTfm[[1,0,0/0,1,0/0,0,1] + (0,0,0)]");
    EXPECT_EQ(written(UniformTransform<3>::yzAxes(a, b)), L"UniformTfm[[0,0,1/1,0,0/0,1,0] + (0,0,0)]");
    EXPECT_EQ(written(UniformTransform<3>::zxAxes(a, b)), L"UniformTfm[[0,1,0/0,0,1/1,0,0] + (0,0,0)]");
    EXPECT_TRUE((Point<3>{1, 2, 3} * UniformTransform<3>::xyAxes(a, a)).isNaN());

    Random<3> random{13};
    for (int round = 0; round < 100; ++round) {
        Vector<3> const u = random.vector(), v = random.vector();
        for (auto const& frame : {UniformTransform<3>::xyAxes(u, v), UniformTransform<3>::yzAxes(u, v),
                                  UniformTransform<3>::zxAxes(u, v)}) {
            EXPECT_NEAR(frame.scale(), 1, 1e-14);  // right-handed, too
            Matrix<4> const h = frame.homogeneous();
            expectNear(h * h.transpose(), Matrix<4>{}, 1e-14);
        }
        // In the frame u lies on the first axis and v in the first two, on the positive side of the second.
        auto const frame = UniformTransform<3>::yzAxes(u, v);
        Vector<3> const first = u / frame, second = v / frame;
        expectNear(Point<3>{} + first, Point<3>{0, u.length(), 0}, 1e-13);
        EXPECT_NEAR(second.x(), 0, 1e-13);
        EXPECT_GT(second.z(), 0);
    }
}

TEST(UniformTransform, StaysAndInverts) {
    Random<3> random{14};
    for (int round = 0; round < 100; ++round) {
        UniformTransform<3> t = random.uniform(), other = random.uniform();
        double const scale = t.scale() * other.scale();
        EXPECT_NEAR((t *= other).scale(), scale, 1e-13);
        t /= other;
        expectNear((t *= t.inverse()).homogeneous(), Matrix<4>{}, 1e-13);
    }
}

TEST(UniformTransform, WritesTranslationScaleAndDegreesInThePlane) {
    EXPECT_EQ(written(UniformTransform<2>{}), L"(0,0)*1~0");
    auto t = UniformTransform<2>::scale(2);
    t *= UniformTransform<2>::rotation(Angle::degrees(90));
    t *= UniformTransform<2>::translation({3, -4.5});
    EXPECT_EQ(written(t), L"(3,-4.5)*2~90");
    EXPECT_EQ(written(UniformTransform<3>::translation({1, 2, 3})), L"UniformTfm[[1,0,0/0,1,0/0,0,1] + (1,2,3)]");
}

}
