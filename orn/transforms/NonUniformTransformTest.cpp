#include "orn/transforms/NonUniformTransform.h"

#include "tests/support/Transforms.h"

namespace {

using transforms::Random;

TEST(NonUniformTransform, ScalesAndTakesAxesAsTheyAre) {
    EXPECT_EQ((Point<2>{3, 5} * NonUniformTransform<2>::scale(2, -1)), (Point<2>{6, -5}));
    EXPECT_EQ((Point<3>{3, 5, 7} * NonUniformTransform<3>::scale(2, -1, 0.5)), (Point<3>{6, -5, 3.5}));
    EXPECT_EQ((Point<2>{1, 10} * NonUniformTransform<2>::axes({2, 3}, {4, 5})), (Point<2>{42, 53}));
    EXPECT_EQ((Point<3>{1, 10, 100} * NonUniformTransform<3>::axes({1, 2, 3}, {4, 5, 6}, {7, 8, 9})),
              (Point<3>{741, 852, 963}));
}

TEST(NonUniformTransform, TakesAnyAffineTransform) {
    Random<3> random{21};
    UniformTransform<3> const uniform = random.uniform();
    NonUniformTransform<3> const t = uniform;
    Point<3> const p = random.point();
    EXPECT_EQ(p * t, p * uniform);
}

// x ↦ 2x + 6 has the inverse x ↦ x/2 − 3.
TEST(NonUniformTransform, Inverts) {
    auto t = NonUniformTransform<2>::scale(2, 4);
    t *= UniformTransform<2>::translation({6, 8});
    EXPECT_EQ((Point<2>{10, 20} * t.inverse()), (Point<2>{2, 3}));
}

}
