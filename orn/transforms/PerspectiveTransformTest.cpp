#include "orn/transforms/PerspectiveTransform.h"

#include "tests/support/Transforms.h"

#include <cfloat>
#include <typeinfo>

namespace {

using transforms::Random;

PerspectiveTransform<2> moved(double dx, double dy) {
    PerspectiveTransform<2> t;
    return t *= UniformTransform<2>::translation({dx, dy});
}

TEST(PerspectiveTransform, TheUnitOneDividesByDepth) {
    PerspectiveTransform<2> const plane;
    EXPECT_EQ((Point<2>{2, -1} * plane), (Point<2>{-2, 1}));
    EXPECT_EQ((Point<2>{3, -2} * plane), (Point<2>{-1.5, 0.5}));
    EXPECT_EQ((Point<2>{-1.5, 0.5} / plane), (Point<2>{3, -2}));
    EXPECT_TRUE(std::isinf((Point<2>{3, 0} * plane).x()));
    PerspectiveTransform<3> const space;
    EXPECT_EQ((Point<3>{3, 5, -2} * space), (Point<3>{-1.5, -2.5, 0.5}));
    EXPECT_EQ((Point<3>{-1.5, -2.5, 0.5} / space), (Point<3>{3, 5, -2}));
    EXPECT_EQ(written(plane), L"[1,0,0/0,0,1/0,-1,0]");
    EXPECT_EQ(written(space), L"[1,0,0,0/0,1,0,0/0,0,0,1/0,0,-1,0]");
    EXPECT_EQ(written(PerspectiveTransform<3>::m_unitTrn), written(space));
}

template <class D>
class PerspectiveOfDimension : public testing::Test {};
TYPED_TEST_SUITE(PerspectiveOfDimension, PlaneAndSpace);

TYPED_TEST(PerspectiveOfDimension, LawsOfComposition) {
    constexpr int N = TypeParam::value;
    Random<N> random{31};
    for (int round = 0; round < 200; ++round) {
        PerspectiveTransform<N> const t = random.perspective();
        NonUniformTransform<N> const a = random.nonUniform();
        Point<N> const p = random.point();

        expectNear(p * t / t, p, 1e-9);
        expectNear(p * t * t.inverse(), p, 1e-9);

        PerspectiveTransform<N> multiplied{t};
        multiplied *= a;
        expectNear(p * multiplied, p * t * a, 1e-12);
        PerspectiveTransform<N> divided{t};
        divided /= a;
        expectNear(divided.homogeneous(), multiplied.homogeneous(), 0);

        std::unique_ptr<Transform<N>> const behind{t.composeWith(a)};
        EXPECT_EQ(typeid(*behind), typeid(PerspectiveTransform<N>));
        EXPECT_EQ(p * *behind, p * multiplied);
        std::unique_ptr<Transform<N>> const before{a.composeWith(t)};
        EXPECT_EQ(typeid(*before), typeid(PerspectiveTransform<N>));
        expectNear(p * *before, p * a * t, 1e-12);

        PerspectiveTransform<N> const other = random.perspective();
        std::unique_ptr<Transform<N>> const both{t.inverse().composeWith(other)};
        EXPECT_EQ(dynamic_cast<PerspectiveTransform<N> const*>(both.get()), nullptr);
        EXPECT_EQ(p * *both, p * t.inverse() * other);
    }
}

TEST(PerspectiveTransform, ExtentsLookAtTheEye) {
    struct Case {
        char const* what;
        PerspectiveTransform<2> t;
        Extent<2> from, to;
    };
    // Worked by hand: the image of (x, y) is (x/y, −1/y) + (dx, dy), in front of the eye for y < 0.
    Case const cases[] = {
        {"in front", {}, {{1, -2}, {2, -1}}, {{-2, 0.5}, {-0.5, 1}}},
        {"behind", {}, {{1, 1}, {2, 2}}, Extent<2>::nothing()},
        {"on the plane of the eye", {}, {{1, 0}, {2, 0}}, Extent<2>::nothing()},
        {"empty", {}, Extent<2>::nothing(), Extent<2>::nothing()},
        {"across", {}, {{1, -1}, {2, 1}}, {{-DBL_MAX, 0}, {0, DBL_MAX}}},
        {"across, on the left", {}, {{-2, -1}, {-1, 1}}, {{0, 0}, {DBL_MAX, DBL_MAX}}},
        {"up to the plane of the eye", {}, {{1, -1}, {2, 0}}, {{-DBL_MAX, 0}, {0, DBL_MAX}}},
        // The point added for x has brought y = 0 into the box, so the back box at y = 0.5 lies above its lower bound.
        {"the box grows as it is compared", moved(0, 1.5), {{1, -1}, {2, 1}}, {{-DBL_MAX, -DBL_MAX}, {0, DBL_MAX}}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(written(c.from * c.t), written(c.to));
        EXPECT_TRUE(c.from * c.t == c.to);
    }

    // What is empty on one axis gives the canonical empty extent, unlike with the other transforms.
    double const bounds[2][2] = {{0, 2}, {1, -1}};
    EXPECT_TRUE(Extent<2>{bounds} * PerspectiveTransform<2>{} == Extent<2>::nothing());
    EXPECT_TRUE(Extent<2>{bounds} / PerspectiveTransform<2>{} == Extent<2>::nothing());

    // Backwards (x, y) goes to (−x/y, −1/y), with w = −y.
    Extent<2> const e{{-2, 0.5}, {-0.5, 1}};
    EXPECT_TRUE((e / PerspectiveTransform<2>{} == Extent<2>{{0.5, -2}, {4, -1}}));

    Extent<3> const box{{1, 1, -1}, {2, 2, 1}};
    EXPECT_TRUE((box * PerspectiveTransform<3>{} == Extent<3>{{-DBL_MAX, -DBL_MAX, 0}, {0, 0, DBL_MAX}}));
    Extent<3> const front{{1, 1, -2}, {2, 4, -1}};
    EXPECT_TRUE((front * PerspectiveTransform<3>{} == Extent<3>{{-2, -4, 0.5}, {-0.5, -0.5, 1}}));
}

TEST(PerspectiveTransform, SlicesWithoutDepth) {
    PerspectiveTransform<3> t;
    double const rows[4][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};
    t *= NonUniformTransform<3>::createFromPod(rows);
    // Row by row: (1, 2, 3, 0), (4, 5, 6, 0), (10, 11, 12, 1), (−7, −8, −9, 0).
    std::unique_ptr<Transform<2>> const plane{t.pSlice()};
    EXPECT_EQ(typeid(*plane), typeid(PerspectiveTransform<2>));
    EXPECT_EQ(written(*plane), L"[1,2,0/4,5,0/-7,-8,0]");
    std::unique_ptr<Transform<1>> const line{plane->pSlice()};
    EXPECT_EQ(typeid(*line), typeid(PerspectiveTransform<1>));
}

}
