#include "orn/transforms/Composition.h"

#include "tests/support/Transforms.h"

#include <typeinfo>

namespace {

using transforms::Random;

template <class D>
class CompositionOfDimension : public testing::Test {};
TYPED_TEST_SUITE(CompositionOfDimension, PlaneAndSpace);

/// An application's own kind of similarity, which no value of the library's can stand for.
class Turned final : public UniformTransform<2> {};

TYPED_TEST(CompositionOfDimension, IsThatOfTheMembers) {
    constexpr int N = TypeParam::value;
    Random<N> random{101};
    auto const all = random.oneOfEach();
    for (auto const& [name, a] : all) {
        EXPECT_EQ(written(*cloneOf(*a)), written(*a)) << name;
        EXPECT_EQ(written(*inverseOf(*a)), written(*std::unique_ptr<Transform<N>>{a->pInverse()})) << name;
        for (auto const& [otherName, b] : all) {
            std::unique_ptr<Transform<N>> const both = compose(*a, *b), expected{a->composeWith(*b)};
            EXPECT_TRUE(typeid(*both) == typeid(*expected) && written(*both) == written(*expected))
                << name << otherName;
        }
    }

    // By value, the same class and the same numbers.
    auto const same = [](auto const& a, auto const& b) {
        auto const value = compose(a, b);
        std::unique_ptr<Transform<N>> const expected{static_cast<Transform<N> const&>(a).composeWith(b)};
        EXPECT_TRUE(typeid(value) == typeid(*expected) && written(value) == written(*expected));
    };
    UniformTransform<N> const uniform = random.uniform();
    NonUniformTransform<N> const affine = random.nonUniform();
    PerspectiveTransform<N> const perspective = random.perspective();
    same(uniform, uniform);
    same(uniform, affine);
    same(affine, uniform);
    same(affine, affine);
    same(perspective, uniform);
    same(perspective, affine);
    static_assert(std::same_as<decltype(compose(uniform, perspective)), std::unique_ptr<Transform<N>>>);
    static_assert(std::same_as<decltype(compose(Turned{}, Turned{})), std::unique_ptr<Transform<2>>>);
    if constexpr (N == 3) {
        std::unique_ptr<Transform<2>> const slice = sliceOf<3>(affine), expected{affine.pSlice()};
        EXPECT_EQ(written(*slice), written(*expected));
    }
}

}
