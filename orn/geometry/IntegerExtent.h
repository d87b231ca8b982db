/// Axis-aligned boxes of ints, two and three dimensions, by the rules of Extent.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Bounds.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/IntegerPoint.h"

#include <iosfwd>

ORN_INT_BOUNDS

/// A box of ints in two or three dimensions; both bounds are inclusive.
template <int N>
class IExtent {
    static_assert(N == 2 || N == 3, "integer extents have two or three dimensions");

public:
    static IExtent const m_everything;  ///< every bound an extreme of the component type
    static IExtent const m_nothing;     ///< the canonical empty box
    static IExtent const& everything() noexcept { return m_everything; }  ///< m_everything
    static IExtent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr IExtent() noexcept = default;                                                          ///< nothing()
    constexpr IExtent(IPoint<N> const& a, IPoint<N> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr IExtent(int const (*rows)[N]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(int (*rows)[N]) const noexcept { box_.packToPod(rows); }         ///< lo, hi

    constexpr IPoint<N> lo() const noexcept { return IPoint<N>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr IPoint<N> hi() const noexcept { return IPoint<N>{box_.hi}; }  ///< of the upper bounds
    constexpr int lo(int i) const noexcept { return box_.lo[i]; }           ///< i must be an axis
    constexpr int hi(int i) const noexcept { return box_.hi[i]; }           ///< as lo

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(IPoint<N> const& p) const noexcept { return box_.contains(p); }  ///< within the bounds

    /// + grows the box until it holds the point, | gives the box around both, and & what both hold, or nothing().
    /// @{
    constexpr IExtent operator+(IPoint<N> const& p) const noexcept { return IExtent{*this} += p; }
    constexpr IExtent operator|(IExtent const& b) const noexcept { return IExtent{*this} |= b; }
    constexpr IExtent operator&(IExtent const& b) const noexcept { return IExtent{*this} &= b; }
    constexpr IExtent& operator+=(IPoint<N> const& p) noexcept {
        box_.include(p);
        return *this;
    }
    constexpr IExtent& operator|=(IExtent const& b) noexcept {
        box_.unite(b.box_);
        return *this;
    }
    constexpr IExtent& operator&=(IExtent const& b) noexcept {
        box_.intersect(b.box_);
        return *this;
    }
    /// @}

    /// Equality is that of all bounds; the order is containment.
    /// @{
    constexpr bool operator==(IExtent const& b) const noexcept { return box_.same(b.box_); }
    constexpr bool operator<=(IExtent const& b) const noexcept { return box_.within(b.box_); }
    constexpr bool operator>=(IExtent const& b) const noexcept { return b <= *this; }
    constexpr bool operator<(IExtent const& b) const noexcept { return *this <= b && *this != b; }
    constexpr bool operator>(IExtent const& b) const noexcept { return b < *this; }
    /// @}

    /// Written as (0,0):(1,1), with as many coordinates as axes, or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, IExtent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<int, N>;
    struct EverythingTag {};

    explicit constexpr IExtent(EverythingTag) noexcept : box_{Box::everything()} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};

// The library holds these: a template's own would keep it, once loaded, from being unloaded.
/// @cond
// clang-format off
template <> ORN_API IExtent<2> const IExtent<2>::m_everything;
template <> ORN_API IExtent<2> const IExtent<2>::m_nothing;
template <> ORN_API IExtent<3> const IExtent<3>::m_everything;
template <> ORN_API IExtent<3> const IExtent<3>::m_nothing;
template <> ORN_API std::wostream& IExtent<2>::putOn(std::wostream& os) const;
template <> ORN_API std::wostream& IExtent<3>::putOn(std::wostream& os) const;
// clang-format on
/// @endcond

namespace ORN {

// For programs in which another library has such a name, too.
using ::IExtent;

}

ORN_INT_BOUNDS_END
