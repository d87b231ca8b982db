#include "orn/transforms/ArcMapping.h"

#include "tests/support/Transforms.h"

namespace {

using transforms::Random;

template <class D>
class ArcsOfDimension : public testing::Test {};
TYPED_TEST_SUITE(ArcsOfDimension, PlaneAndSpace);

template <int N>
Point<N> along(ORN::Arc<N> const& arc, double part) {
    Point<N> point;
    Vector<N> tangent;
    arc.measureOff(arc.length() * part, point, tangent);
    return point;
}

template <int N>
ORN::Arc<N> someArc(Random<N>& random) {
    Point<N> const start = random.point(), end = random.point();
    if constexpr (N == 2) {
        return {start, random.magnitude(-2, 0.5), end};
    } else {
        return {start, random.magnitude(-2, 0.5), cross(end - start, random.vector()), end};
    }
}

TYPED_TEST(ArcsOfDimension, StayArcsUnderASimilarity) {
    constexpr int N = TypeParam::value;
    Random<N> random{91};
    for (int round = 0; round < 200; ++round) {
        ORN::Arc<N> const arc = someArc(random);
        UniformTransform<N> t = random.uniform();
        if (round % 2 == 0) {
            if constexpr (N == 2)
                t *= UniformTransform<2>::mirror(ORN::Line<2>{random.vector().unit(), random.point()});
            else
                t *= UniformTransform<3>::scale(-1);
        }
        for (double const part : {0.0, 0.3, 1.0}) {
            expectNear(along(arc * t, part), along(arc, part) * t, 1e-11);
            expectNear(along(arc / t, part), along(arc, part) / t, 1e-11);
        }
    }
}

TEST(ArcMapping, GivesArcsOfEllipsesUnderAnyAffineMap) {
    Random<2> random{92};
    for (int round = 0; round < 200; ++round) {
        ORN::Arc<2> const arc = someArc(random);
        NonUniformTransform<2> const t = random.nonUniform(), other = random.nonUniform();
        ORN::EllipticArc const image = ORN::ellipticArc(arc, t);
        ORN::EllipticArc const further = image * other;
        for (double const part : {0.0, 0.3, 1.0}) {
            expectNear(image.at(image.from + image.sweep * part), along(arc, part) * t, 1e-11);
            expectNear(further.at(further.from + further.sweep * part), along(arc, part) * t * other, 1e-11);
        }
    }
    EXPECT_FALSE(ORN::ellipticArc(ORN::Arc<2>{{0, 0}, {1, 0}}, NonUniformTransform<2>{}).centre.isFinite());
}

}
