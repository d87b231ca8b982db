#include "orn/transforms/Transform.h"

#include "orn/transforms/CompoundTransformImp.h"
#include "orn/transforms/SlicedTransformImp.h"

#include <memory>
#include <utility>

namespace {

/// The box of the corners' images. An empty extent has none and stays as it is.
template <int N, typename Map>
Extent<N> boxOfCorners(Extent<N> const& e, Map map) {
    if (e.degenerate()) return e;
    Extent<N> box;
    for (unsigned int k = 0; k < 1U << N; ++k) box += map(e.corner(k));
    return box;
}

}

// What the operators in the header call for classes that are not computed in place.
Point<2> ORN::TransformApplication::call(Point<2> const& p, Transform<2> const& t) { return t.preMultiply(p); }
Point<3> ORN::TransformApplication::call(Point<3> const& p, Transform<3> const& t) { return t.preMultiply(p); }

Transform<1>::~Transform() = default;

template <int N>
Transform<N>::~Transform() = default;

template <int N>
Transform<N - 1>* Transform<N>::pSlice() const {
    // Owned before the slice is made: when that has no memory, the copy goes too.
    std::unique_ptr<Transform> full{clone()};
    return new SlicedTransform<N - 1>{std::move(full)};
}

template <int N>
Transform<N>* Transform<N>::composeWith(Transform const& other) const {
    // The second first: an application sees in which order its own transforms are copied.
    std::unique_ptr<Transform> second{other.clone()};
    std::unique_ptr<Transform> first{clone()};
    return new CompoundTransform<N>{std::move(first), std::move(second)};
}

template <int N>
Extent<N> Transform<N>::preMultiply(Extent<N> const& e) const {
    return boxOfCorners(e, [this](Point<N> const& corner) { return preMultiply(corner); });
}

template <int N>
Extent<N> Transform<N>::preDivide(Extent<N> const& e) const {
    return boxOfCorners(e, [this](Point<N> const& corner) { return preDivide(corner); });
}

template class ORN_API_DEFINED Transform<2>;
template class ORN_API_DEFINED Transform<3>;
