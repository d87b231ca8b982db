#include "orn/geometry/IntegerExtent.h"

#include "tests/support/BoxLaws.h"
#include "tests/support/Geometry.h"

namespace {

TEST(IntegerExtent, ObeysTheLawsOfBoxes) {
    constexpr int most = 2147483647;
    BoxLaws<IExtent<2>, IPoint<2>, int>{}.expect(-most - 1, most);
    BoxLaws<IExtent<3>, IPoint<3>, int>{}.expect(-most - 1, most);
}

TEST(IntegerExtent, WritesItsCorners) {
    EXPECT_EQ(written(IExtent<2>{IPoint<2>{1, 0}, IPoint<2>{0, -1}}, IExtent<3>{IPoint<3>{}, IPoint<3>{1, 2, 3}},
                      IExtent<2>{}),
              L"(0,-1):(1,0)(0,0,0):(1,2,3)degenerate");
}

}
