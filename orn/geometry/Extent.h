/// Axis-aligned boxes of doubles, one to three dimensions.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Bounds.h"
#include "orn/geometry/Point.h"

#include <iosfwd>

ORN_INT_BOUNDS

/// A box along the axes, of one to three dimensions. It is degenerate (empty) when lo > hi on some axis; a single point
/// is not. The empty box has one canonical value, nothing(), which is the identity of | and what & gives for disjoint
/// boxes. Both bounds are inclusive. Boxes are ordered by containment: a < b means that a lies within b and differs from
/// it.
template <int N>
class Extent {
    static_assert(1 <= N && N <= 3, "extents have one to three dimensions");

public:
    static Extent const m_everything;  ///< every bound an extreme of the component type
    static Extent const m_nothing;     ///< the canonical empty box
    static Extent const& everything() noexcept { return m_everything; }  ///< m_everything
    static Extent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr Extent() noexcept = default;                                                        ///< nothing()
    constexpr Extent(Point<N> const& a, Point<N> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr Extent(double const (*rows)[N]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(double (*rows)[N]) const noexcept { box_.packToPod(rows); }        ///< lo, hi

    constexpr Point<N> lo() const noexcept { return Point<N>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr Point<N> hi() const noexcept { return Point<N>{box_.hi}; }  ///< of the upper bounds
    constexpr double lo(int i) const noexcept { return box_.lo[i]; }      ///< i must be an axis
    constexpr double hi(int i) const noexcept { return box_.hi[i]; }      ///< as lo

    /// Half of the sum of the bounds.
    constexpr Point<N> centre() const noexcept {
        return pointOf([this](int i) { return (box_.lo[i] + box_.hi[i]) * 0.5; });
    }

    /// The corner with hi on the axes whose bits are set in k, else lo.
    constexpr Point<N> corner(unsigned int k) const noexcept {
        return pointOf([this, k](int i) { return (k >> i & 1u ? box_.hi : box_.lo)[i]; });
    }

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(Point<N> const& p) const noexcept { return box_.contains(p); }  ///< true for NaN

    /// + grows the box until it holds the point, | gives the box around both, and & what both hold, or nothing().
    /// @{
    constexpr Extent operator+(Point<N> const& p) const noexcept { return Extent{*this} += p; }
    constexpr Extent operator|(Extent const& b) const noexcept { return Extent{*this} |= b; }
    constexpr Extent operator&(Extent const& b) const noexcept { return Extent{*this} &= b; }
    constexpr Extent& operator+=(Point<N> const& p) noexcept {
        box_.include(p);
        return *this;
    }
    constexpr Extent& operator|=(Extent const& b) noexcept {
        box_.unite(b.box_);
        return *this;
    }
    constexpr Extent& operator&=(Extent const& b) noexcept {
        box_.intersect(b.box_);
        return *this;
    }
    /// @}

    /// The box with every side moved out by d, in for a negative d; nothing() when shrunk past the centre.
    constexpr Extent dilate(double d) const noexcept { return Extent{box_.dilated(d)}; }

    /// Maintains the union of many parts when one of them changes: false when the union must be formed anew, because
    /// the part gave up a bound that it had reached.
    constexpr bool update(Extent const& before, Extent const& after) noexcept {
        return box_.update(before.box_, after.box_);
    }

    /// Equality is that of all bounds; the order is containment.
    /// @{
    constexpr bool operator==(Extent const& b) const noexcept { return box_.same(b.box_); }
    constexpr bool operator<=(Extent const& b) const noexcept { return box_.within(b.box_); }
    constexpr bool operator>=(Extent const& b) const noexcept { return b <= *this; }
    constexpr bool operator<(Extent const& b) const noexcept { return *this <= b && *this != b; }
    constexpr bool operator>(Extent const& b) const noexcept { return b < *this; }
    /// @}

    /// Written as (0,0):(1,1), with as many coordinates as axes, or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, Extent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<double, N>;
    struct EverythingTag {};

    explicit constexpr Extent(EverythingTag) noexcept : box_{Box::everything()} {}
    explicit constexpr Extent(Box const& box) noexcept : box_{box} {}
    std::wostream& putOn(std::wostream& os) const;

    template <typename Coordinate>
    static constexpr Point<N> pointOf(Coordinate at) noexcept {
        if constexpr (N == 1) {
            return Point<N>{at(0)};
        } else if constexpr (N == 2) {
            return {at(0), at(1)};
        } else {
            return {at(0), at(1), at(2)};
        }
    }

    Box box_ = Box::nothing();
};

/// @cond
// The library holds these: a template's own would keep it, once loaded, from being unloaded.
// clang-format off
template <> ORN_API Extent<1> const Extent<1>::m_everything;
template <> ORN_API Extent<1> const Extent<1>::m_nothing;
template <> ORN_API Extent<2> const Extent<2>::m_everything;
template <> ORN_API Extent<2> const Extent<2>::m_nothing;
template <> ORN_API Extent<3> const Extent<3>::m_everything;
template <> ORN_API Extent<3> const Extent<3>::m_nothing;
template <> ORN_API std::wostream& Extent<1>::putOn(std::wostream& os) const;
template <> ORN_API std::wostream& Extent<2>::putOn(std::wostream& os) const;
template <> ORN_API std::wostream& Extent<3>::putOn(std::wostream& os) const;
// clang-format on
/// @endcond

namespace ORN {

// For programs in which another library has such a name, too.
using ::Extent;

}

ORN_INT_BOUNDS_END
