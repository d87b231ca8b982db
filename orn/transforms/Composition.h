/// Transforms composed, inverted and copied with nothing to delete: by value where the types tell what it will be, else owned
/// by a std::unique_ptr.
#pragma once

#include "orn/transforms/NonUniformTransform.h"
#include "orn/transforms/PerspectiveTransform.h"
#include "orn/transforms/Transform.h"
#include "orn/transforms/UniformTransform.h"

#include <concepts>
#include <memory>

/// @cond
namespace ORN {

// The class that composing two of the library's classes gives, as Type; nothing for all others.
template <typename A, typename B>
struct Composed {};
template <int N>
struct Composed<UniformTransform<N>, UniformTransform<N>> {
    using Type = UniformTransform<N>;
};
template <int N>
struct Composed<UniformTransform<N>, NonUniformTransform<N>> {
    using Type = NonUniformTransform<N>;
};
template <int N>
struct Composed<NonUniformTransform<N>, UniformTransform<N>> {
    using Type = NonUniformTransform<N>;
};
template <int N>
struct Composed<NonUniformTransform<N>, NonUniformTransform<N>> {
    using Type = NonUniformTransform<N>;
};
template <int N, template <int> class Affine>
requires std::derived_from<Affine<N>, AffineTransform<N>>
struct Composed<PerspectiveTransform<N>, Affine<N>> {
    using Type = PerspectiveTransform<N>;
};

}
/// @endcond

/// a, then b, as the most specific kind that composeWith finds when the program runs.
template <int N>
[[nodiscard]] std::unique_ptr<Transform<N>> compose(Transform<N> const& a, Transform<N> const& b) {
    return std::unique_ptr<Transform<N>>{a.composeWith(b)};
}

/// a, then b, by value: of two similarities a similarity, of affine transforms an affine one, of a perspective and what is
/// done behind it a perspective. An application's own class is composed through Transform, as above.
template <typename A, typename B>
[[nodiscard]] typename ORN::Composed<A, B>::Type compose(A const& a, B const& b) {
    typename ORN::Composed<A, B>::Type both{a};
    both *= b;
    return both;
}

/// What clone, pInverse and pSlice give, owned.
/// @{
template <int N>
[[nodiscard]] std::unique_ptr<Transform<N>> cloneOf(Transform<N> const& t) {
    return std::unique_ptr<Transform<N>>{t.clone()};
}
template <int N>
[[nodiscard]] std::unique_ptr<Transform<N>> inverseOf(Transform<N> const& t) {
    return std::unique_ptr<Transform<N>>{t.pInverse()};
}
template <int N>
[[nodiscard]] std::unique_ptr<Transform<N - 1>> sliceOf(Transform<N> const& t) {
    return std::unique_ptr<Transform<N - 1>>{t.pSlice()};
}
/// @}
