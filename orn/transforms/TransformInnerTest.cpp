#include "orn/transforms/CompoundTransformImp.h"
#include "orn/transforms/SlicedTransformImp.h"

#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"
#include "tests/support/Transforms.h"

namespace {

using transforms::Random;

TEST(TransformInner, AFailedAllocationLeavesNothingBehind) {
    Random<3> random{51};
    auto const all = random.oneOfEach();
    for (auto const& [name, t] : all) {
        SCOPED_TRACE(name);
        std::vector<std::function<void()>> operations{
            [&t = *t] { delete t.clone(); },
            [&t = *t] { delete t.pInverse(); },
            [&t = *t] { delete t.pSlice(); },
        };
        for (auto const& other : all)
            operations.emplace_back([&t = *t, &u = *other.second] { delete t.composeWith(u); });
        for (auto const& operation : operations) {
            long const blocks = faults::liveBlocks();
            EXPECT_GT(faults::failEveryAllocation(operation), 0);
            EXPECT_EQ(faults::liveBlocks(), blocks);
        }
    }
}

TEST(TransformInner, ASliceToOneDimensionMapsExtentsOnly) {
    using Owner = std::unique_ptr<Transform<2>>;
    CompoundTransform<2> const plane{Owner{NonUniformTransform<2>::axes({2, 1}, {100, 100}).clone()},
                                     Owner{UniformTransform<2>::translation({3, 0}).clone()}};
    std::unique_ptr<Transform<1>> const owned{plane.pSlice()};
    auto const& slice = dynamic_cast<SlicedTransform<1> const&>(*owned);

    // y is 0, so x goes to 2x + 3.
    EXPECT_TRUE(
        (slice.preMultiply(Extent<1>{Point<1>{-1.0}, Point<1>{4.0}}) == Extent<1>{Point<1>{1.0}, Point<1>{11.0}}));
    EXPECT_TRUE(slice.preMultiply(Extent<1>{}) == Extent<1>::nothing());
    EXPECT_TRUE(slice.preDivide(Extent<1>{}) == Extent<1>::nothing());

    std::wostringstream os;
    slice.putOn(os);
    EXPECT_EQ(os.str(), written(plane));

    std::unique_ptr<Transform<1>> const clone{slice.clone()}, inverse{slice.pInverse()};
    Extent<1> const e{Point<1>{1.0}, Point<1>{2.0}},
        back = dynamic_cast<SlicedTransform<1> const&>(*inverse).preMultiply(e);
    EXPECT_TRUE(dynamic_cast<SlicedTransform<1> const&>(*clone).preMultiply(e) == slice.preMultiply(e));
    EXPECT_NEAR(back.lo(0), slice.preDivide(e).lo(0), 1e-12);
    EXPECT_NEAR(back.hi(0), slice.preDivide(e).hi(0), 1e-12);

    EXPECT_EQ(thrown([&] { slice.preMultiply(Point<1>{1.0}); }), L"text: Not implemented");
    EXPECT_EQ(thrown([&] { slice.preDivide(Point<1>{1.0}); }), L"text: Not implemented");
}

}
