#include "orn/transforms/ArcMapping.h"

#include "tests/support/ExactArc.h"
#include "tests/support/Transforms.h"

namespace {

using transforms::Random;

template <class D>
class ArcsOfDimension : public testing::Test {};
TYPED_TEST_SUITE(ArcsOfDimension, PlaneAndSpace);

TYPED_TEST(ArcsOfDimension, StayArcsUnderASimilarity) {
    constexpr int N = TypeParam::value;
    Random<N> random{91};
    for (int round = 0; round < 200; ++round) {
        ORN::Arc<N> const arc = someArc<N>(random, random.magnitude(-2, 0.5));
        UniformTransform<N> t = random.uniform();
        if (round % 2 == 0) {
            if constexpr (N == 2)
                t *= UniformTransform<2>::mirror(ORN::Line<2>{random.vector().unit(), random.point()});
            else
                t *= UniformTransform<3>::scale(-1);
        }
        ExactArc const exact{arc}, there{arc * t}, back{arc / t};
        for (double const part : {0.0, 0.3, 1.0}) {
            Point<N> const p = exact.template rounded<N>(part);
            expectNear(there.template rounded<N>(part), p * t, 1e-11);
            expectNear(back.template rounded<N>(part), p / t, 1e-11);
        }
    }
}

TEST(ArcMapping, GivesArcsOfEllipsesUnderAnyAffineMap) {
    Random<2> random{92};
    for (int round = 0; round < 200; ++round) {
        ORN::Arc<2> const arc = someArc<2>(random, random.magnitude(-2, 0.5));
        ExactArc const exact{arc};
        NonUniformTransform<2> const t = random.nonUniform(), other = random.nonUniform();
        ORN::EllipticArc const image = ORN::ellipticArc(arc, t);
        ORN::EllipticArc const further = image * other;
        for (double const part : {0.0, 0.3, 1.0}) {
            Point<2> const p = exact.rounded<2>(part);
            expectNear(image.at(image.from + image.sweep * part), p * t, 1e-11);
            expectNear(further.at(further.from + further.sweep * part), p * t * other, 1e-11);
        }
    }
    EXPECT_FALSE(ORN::ellipticArc(ORN::Arc<2>{{0, 0}, {1, 0}}, NonUniformTransform<2>{}).centre.isFinite());
}

}
