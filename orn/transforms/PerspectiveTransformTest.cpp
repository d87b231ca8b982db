#include "orn/transforms/Composition.h"

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
    PerspectiveTransform<3> const space;
    EXPECT_EQ((Point<2>{3, -2} * plane), (Point<2>{-1.5, 0.5}));
    EXPECT_TRUE(std::isinf((Point<2>{3, 0} * plane).x()));
    EXPECT_EQ((Point<3>{3, 5, -2} * space), (Point<3>{-1.5, -2.5, 0.5}));
    EXPECT_EQ(written(plane, space), L"[1,0,0/0,0,1/0,-1,0][1,0,0,0/0,1,0,0/0,0,0,1/0,0,-1,0]");
    EXPECT_EQ(written(PerspectiveTransform<3>::m_unitTrn), written(space));
}

TEST(PerspectiveTransform, MultipliesByTheOtherWhetherItMultipliesOrDivides) {
    Random<3> random{31};
    NonUniformTransform<3> const a = random.nonUniform();
    PerspectiveTransform<3> const t = random.perspective();
    PerspectiveTransform<3> multiplied{t}, divided{t};
    expectNear((divided /= a).homogeneous(), (multiplied *= a).homogeneous(), 0);
    Point<3> const p = random.point();
    EXPECT_EQ(p * multiplied, p * *compose<3>(t, a));
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
        {"across, from the axis on", {}, {{0, -1}, {2, 1}}, {{-DBL_MAX, 0}, {0, DBL_MAX}}},
        {"up to the plane of the eye", {}, {{1, -1}, {2, 0}}, {{-DBL_MAX, 0}, {0, DBL_MAX}}},
        {"up to it, where x/w is 0/0", {}, {{0, -1}, {0, 0}}, {{0, 1}, {0, 1}}},
        // The point added for x has brought y = 0 into the box, so the back box at y = 0.5 lies above its lower bound.
        {"the box grows as it is compared", moved(0, 1.5), {{1, -1}, {2, 1}}, {{-DBL_MAX, -DBL_MAX}, {0, DBL_MAX}}},
    };
    for (Case const& c : cases) EXPECT_TRUE(c.from * c.t == c.to) << c.what;

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
    auto const plane = sliceOf<3>(t);
    auto const line = sliceOf(*plane);
    Transform<2> const& ofPlane = *plane;
    Transform<1> const& ofLine = *line;
    EXPECT_TRUE(typeid(ofPlane) == typeid(PerspectiveTransform<2>) && written(ofPlane) == L"[1,2,0/4,5,0/-7,-8,0]");
    EXPECT_EQ(typeid(ofLine), typeid(PerspectiveTransform<1>));
}

}
