/// std::hash of points, vectors and arcs, for unordered containers. What is equal by == has one hash: zeros of either sign
/// do. The values differ between programs and releases.
#pragma once

#include "orn/geometry/Arc.h"
#include "orn/geometry/IntegerPoint.h"
#include "orn/geometry/Point.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/geometry/Vector.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace ORN {

/// The hash of two in this order.
constexpr std::size_t hashOf(std::size_t first, std::size_t second) noexcept {
    // Multiplications by odd numbers and shifts spread what differs in few bits.
    std::uint64_t h = first * 0x9E3779B97F4A7C15u + second;
    h = (h ^ h >> 33) * 0xFF51AFD7ED558CCDu;
    h = (h ^ h >> 33) * 0xC4CEB9FE1A85EC53u;
    return static_cast<std::size_t>(h ^ h >> 33);
}

/// Of what packs itself into N components of type T.
template <typename T, int N, typename Tuple>
std::size_t hashOfTuple(Tuple const& tuple) noexcept {
    T components[static_cast<std::size_t>(N)];
    tuple.packToPod(components);
    std::size_t hash = N;
    for (T const component : components) hash = hashOf(hash, std::hash<T>{}(component));
    return hash;
}

}

// As == compares.
/// @cond
template <int N>
struct std::hash<Point<N>> {
    std::size_t operator()(Point<N> const& p) const noexcept { return ORN::hashOfTuple<double, N>(p); }
};
template <int N>
struct std::hash<Vector<N>> {
    std::size_t operator()(Vector<N> const& v) const noexcept { return ORN::hashOfTuple<double, N>(v); }
};
template <int N>
struct std::hash<IPoint<N>> {
    std::size_t operator()(IPoint<N> const& p) const noexcept { return ORN::hashOfTuple<int, N>(p); }
};
template <int N>
struct std::hash<IVector<N>> {
    std::size_t operator()(IVector<N> const& v) const noexcept { return ORN::hashOfTuple<int, N>(v); }
};
template <int N>
struct std::hash<ORN::Arc<N>> {
    std::size_t operator()(ORN::Arc<N> const& arc) const noexcept {
        std::size_t all = ORN::hashOf(std::hash<Point<N>>{}(arc.start()), std::hash<Point<N>>{}(arc.end()));
        if constexpr (N == 3) all = ORN::hashOf(all, std::hash<Vector<N>>{}(arc.axis()));
        return ORN::hashOf(all, std::hash<double>{}(arc.bulge()));
    }
};
/// @endcond
