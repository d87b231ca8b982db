// What boxes of doubles and of ints compute alike, for Extent.h and IntegerExtent.h. Programs use those.
#pragma once

#include "orn/Export.h"

#include <limits>

ORN_INT_BOUNDS

/// @cond
namespace ORN {

// The bounds of a box of every dimension and component type, and what extents do with them axis by axis. Every comparison
// is written so that NaN, for which each is false, passes as the extents promise.
template <class T, int N>
struct Bounds {
    // The extremes of the component type.
    static constexpr T least = std::numeric_limits<T>::lowest();
    static constexpr T most = (std::numeric_limits<T>::max)();

    T lo[N];  // the lower bounds
    T hi[N];  // the upper bounds

    // The same interval on every axis.
    static constexpr Bounds filled(T low, T high) noexcept {
        Bounds all{};
        for (int i = 0; i < N; ++i) all.lo[i] = low, all.hi[i] = high;
        return all;
    }
    static constexpr Bounds everything() noexcept { return filled(least, most); }  // from least to most
    static constexpr Bounds nothing() noexcept { return filled(most, least); }     // from most to least

    // Around two points, in any order.
    template <class P>
    static constexpr Bounds around(P const& a, P const& b) noexcept {
        Bounds box{};
        for (int i = 0; i < N; ++i) {
            bool const ordered = b[i] > a[i];
            box.lo[i] = ordered ? a[i] : b[i];
            box.hi[i] = ordered ? b[i] : a[i];
        }
        return box;
    }

    // Row 0 is lo, row 1 hi; not ordered.
    static constexpr Bounds fromRows(T const (*rows)[N]) noexcept {
        Bounds box{};
        for (int i = 0; i < N; ++i) box.lo[i] = rows[0][i], box.hi[i] = rows[1][i];
        return box;
    }

    // Row 0 is lo, row 1 hi.
    constexpr void packToPod(T (*rows)[N]) const noexcept {
        for (int i = 0; i < N; ++i) rows[0][i] = lo[i], rows[1][i] = hi[i];
    }

    // Grows to hold the point.
    template <class P>
    constexpr void include(P const& p) noexcept {
        for (int i = 0; i < N; ++i) {
            T const c = p[i];
            if (lo[i] > c) lo[i] = c;
            if (c > hi[i]) hi[i] = c;
        }
    }

    // Grows to hold the other.
    constexpr void unite(Bounds const& b) noexcept {
        for (int i = 0; i < N; ++i) {
            if (lo[i] > b.lo[i]) lo[i] = b.lo[i];
            if (b.hi[i] > hi[i]) hi[i] = b.hi[i];
        }
    }

    // Shrinks to what both hold, or to nothing().
    constexpr void intersect(Bounds const& b) noexcept {
        for (int i = 0; i < N; ++i) {
            if (b.lo[i] > lo[i]) lo[i] = b.lo[i];
            if (hi[i] > b.hi[i]) hi[i] = b.hi[i];
            if (lo[i] > hi[i]) {
                *this = nothing();
                return;
            }
        }
    }

    // Both bounds are inclusive; true for NaN.
    template <class P>
    constexpr bool contains(P const& p) const noexcept {
        for (int i = 0; i < N; ++i)
            if (lo[i] > p[i] || p[i] > hi[i]) return false;
        return true;
    }

    // Whether lo > hi on some axis.
    constexpr bool degenerate() const noexcept {
        for (int i = 0; i < N; ++i)
            if (lo[i] > hi[i]) return true;
        return false;
    }

    // Whether the other holds every bound.
    constexpr bool within(Bounds const& b) const noexcept {
        for (int i = 0; i < N; ++i)
            if (b.lo[i] > lo[i] || hi[i] > b.hi[i]) return false;
        return true;
    }

    // Whether all bounds are equal.
    constexpr bool same(Bounds const& b) const noexcept {
        for (int i = 0; i < N; ++i)
            if (!(lo[i] == b.lo[i] && hi[i] == b.hi[i])) return false;
        return true;
    }

    // Every side moved out by d; nothing() when shrunk past the centre.
    constexpr Bounds dilated(T d) const noexcept {
        Bounds box{};
        for (int i = 0; i < N; ++i) box.lo[i] = lo[i] - d, box.hi[i] = hi[i] + d;
        return box.degenerate() ? nothing() : box;
    }

    // See Extent::update.
    constexpr bool update(Bounds const& before, Bounds const& after) noexcept {
        bool exact = true;
        for (int i = 0; i < N; ++i) {
            if (lo[i] >= after.lo[i])
                lo[i] = after.lo[i];
            else if (lo[i] >= before.lo[i])
                exact = false;
            if (after.hi[i] >= hi[i])
                hi[i] = after.hi[i];
            else if (before.hi[i] >= hi[i])
                exact = false;
        }
        return exact;
    }
};

}
/// @endcond

ORN_INT_BOUNDS_END
