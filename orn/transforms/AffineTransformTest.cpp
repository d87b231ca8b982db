#include "orn/transforms/AffineTransform.h"

#include "tests/support/Transforms.h"

#include <cstring>

namespace {

using transforms::Random;

template <class D>
class AffineOfDimension : public testing::Test {};
TYPED_TEST_SUITE(AffineOfDimension, PlaneAndSpace);

TYPED_TEST(AffineOfDimension, LawsOfApplication) {
    constexpr int N = TypeParam::value;
    expectNear(NonUniformTransform<N>{}.homogeneous(), Matrix<N + 1>{}, 0);
    EXPECT_FALSE(NonUniformTransform<N>{}.mirroring());
    Random<N> random{3};
    for (int round = 0; round < 200; ++round) {
        NonUniformTransform<N> const a = random.nonUniform();
        UniformTransform<N> const b = random.uniform();
        Point<N> const p = random.point();
        Vector<N> const v = random.vector();

        expectNear(p * a / a, p, 1e-12);
        expectNear(Point<N>{} + v * a / a, Point<N>{} + v, 1e-12);
        expectNear(p * a.inverse(), p / a, 1e-12);
        expectNear((p + v) * a, p * a + v * a, 1e-12);
        EXPECT_EQ(Point<N>{} * a, Point<N>{} + a.translation());

        // The homogeneous matrix and the packed rows map as the transform.
        double row[N + 1], rows[N + 1][N];
        p.packToPod(row);
        row[N] = 1;
        Vector<N + 1> const image{Vector<N + 1>{row}, a.homogeneous()};
        for (int i = 0; i < N; ++i) EXPECT_EQ(image[i], (p * a)[i]);
        EXPECT_EQ(image[N], 1);
        a.packToPod(rows);
        auto const again = NonUniformTransform<N>::createFromPod(rows);
        EXPECT_TRUE(p * again == p * a && again.translation() == a.translation());

        NonUniformTransform<N> ab{a}, self{a};
        ab *= b;
        expectNear(p * ab, p * a * b, 1e-12);
        ab /= b;
        expectNear(p * ab, p * a, 1e-12);
        self /= self;
        expectNear(self.homogeneous(), Matrix<N + 1>{}, 1e-12);

        Point<N> moved = p;
        EXPECT_EQ(moved *= a, p * a);
        EXPECT_EQ(moved /= a, p * a / a);
        Vector<N> turned = v;
        EXPECT_TRUE((turned *= a) == v * a);
        EXPECT_TRUE((turned /= a) == v * a / a);
    }
}

TYPED_TEST(AffineOfDimension, ExtentsBecomeTheBoxOfTheirCorners) {
    constexpr int N = TypeParam::value;
    Random<N> random{4};
    for (int round = 0; round < 100; ++round) {
        NonUniformTransform<N> const t = random.nonUniform();
        Extent<N> const e{random.point(), random.point()};
        Extent<N> box, back;
        for (unsigned int k = 0; k < 1U << N; ++k) {
            box += e.corner(k) * t;
            back += e.corner(k) / t;
        }
        EXPECT_TRUE(e * t == box && e / t == back);

        Extent<N> grown = e;
        EXPECT_TRUE((grown *= t) == box);
        EXPECT_TRUE((grown /= t) == box / t);
        EXPECT_TRUE(Extent<N>::nothing() * t == Extent<N>::nothing());
    }
    // What is empty on one axis only comes back as it is, and not as the canonical empty extent.
    double bounds[2][N] = {};
    bounds[0][N - 1] = 2;
    bounds[1][N - 1] = 1;
    Extent<N> const empty{bounds};
    EXPECT_TRUE(empty * random.uniform() == empty);
    EXPECT_TRUE(empty / random.uniform() == empty);
}

TEST(AffineTransform, MirroringIsANegativeDeterminant) {
    EXPECT_TRUE(NonUniformTransform<2>::scale(-1, 3).mirroring());
    EXPECT_FALSE(NonUniformTransform<2>::scale(-1, -3).mirroring());
    EXPECT_FALSE(NonUniformTransform<2>::axes({1, 2}, {2, 4}).mirroring());
    EXPECT_TRUE(NonUniformTransform<3>::scale(-1, -3, -1).mirroring());
    EXPECT_TRUE(NonUniformTransform<3>::axes({0, 1, 0}, {1, 0, 0}, {0, 0, 1}).mirroring());
    EXPECT_FALSE(NonUniformTransform<3>::axes({0, 1, 0}, {0, 0, 1}, {1, 0, 0}).mirroring());
    EXPECT_FALSE(NonUniformTransform<3>::axes({1, 2, 3}, {2, 4, 6}, {0, 0, 1}).mirroring());
}

TEST(AffineTransform, SingularGivesNoFinitePoint) {
    EXPECT_FALSE((Point<2>{1, 1} / NonUniformTransform<2>::axes({1, 2}, {2, 4})).isFinite());
    EXPECT_FALSE((Point<3>{1, 1, 1} / NonUniformTransform<3>::scale(1, 0, 1)).isFinite());
}

TEST(AffineTransform, SliceOfSpaceKeepsThePlane) {
    double const rows[4][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
    std::unique_ptr<Transform<2>> const slice{NonUniformTransform<3>::createFromPod(rows).pSlice()};
    auto const& plane = dynamic_cast<NonUniformTransform<2> const&>(*slice);
    double flat[3][2];
    plane.packToPod(flat);
    double const expected[3][2] = {{1, 2}, {4, 5}, {10, 11}};
    EXPECT_EQ(std::memcmp(flat, expected, sizeof flat), 0);
    std::unique_ptr<Transform<2>> const ofUniform{UniformTransform<3>{}.pSlice()};
    EXPECT_NE(dynamic_cast<NonUniformTransform<2> const*>(ofUniform.get()), nullptr);
}

TEST(AffineTransform, WritesTranslationAndMatrix) {
    double const rows[3][2] = {{1, 0.5}, {0, -2}, {3, 4}};
    EXPECT_EQ(written(NonUniformTransform<2>::createFromPod(rows)), L"(3,4)+[1,0.5/0,-2]");
    EXPECT_EQ(written(NonUniformTransform<3>::scale(1, 2, 3)), L"(0,0,0)+[1,0,0/0,2,0/0,0,3]");
}

}
