/// Axis-aligned boxes of ints, two and three dimensions, by the rules of Extent.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/IntegerPoint.h"

#include <iosfwd>

/// A box of ints: IExtent<2>, IExtent<3>.
template <int N>
class IExtent;

/// A box of the plane; both bounds are inclusive.
template <>
class ORN_API IExtent<2> {
public:
    static IExtent const m_everything;  ///< every bound an extreme of the component type
    static IExtent const m_nothing;     ///< the canonical empty box
    static IExtent const& everything() noexcept { return m_everything; }  ///< m_everything
    static IExtent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr IExtent() noexcept = default;                                                          ///< nothing()
    constexpr IExtent(IPoint<2> const& a, IPoint<2> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr IExtent(int const (*rows)[2]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(int (*rows)[2]) const noexcept { box_.packToPod(rows); }         ///< lo, hi

    constexpr IPoint<2> lo() const noexcept { return IPoint<2>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr IPoint<2> hi() const noexcept { return IPoint<2>{box_.hi}; }  ///< of the upper bounds
    constexpr int lo(int i) const noexcept { return box_.lo[i]; }           ///< i must be an axis
    constexpr int hi(int i) const noexcept { return box_.hi[i]; }           ///< as lo

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(IPoint<2> const& p) const noexcept { return box_.contains(p); }  ///< within the bounds

    /// Grown by a point; the box around both; what both hold, or nothing().
    /// @{
    constexpr IExtent operator+(IPoint<2> const& p) const noexcept { return IExtent{*this} += p; }
    constexpr IExtent operator|(IExtent const& b) const noexcept { return IExtent{*this} |= b; }
    constexpr IExtent operator&(IExtent const& b) const noexcept { return IExtent{*this} &= b; }
    constexpr IExtent& operator+=(IPoint<2> const& p) noexcept {
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

    /// Written as (0,0):(1,1), or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, IExtent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<int, 2>;
    struct EverythingTag {};

    explicit constexpr IExtent(EverythingTag) noexcept : box_{Box::everything()} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};

/// A box of space; both bounds are inclusive.
template <>
class ORN_API IExtent<3> {
public:
    static IExtent const m_everything;  ///< every bound an extreme of the component type
    static IExtent const m_nothing;     ///< the canonical empty box
    static IExtent const& everything() noexcept { return m_everything; }  ///< m_everything
    static IExtent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr IExtent() noexcept = default;                                                          ///< nothing()
    constexpr IExtent(IPoint<3> const& a, IPoint<3> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr IExtent(int const (*rows)[3]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(int (*rows)[3]) const noexcept { box_.packToPod(rows); }         ///< lo, hi

    constexpr IPoint<3> lo() const noexcept { return IPoint<3>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr IPoint<3> hi() const noexcept { return IPoint<3>{box_.hi}; }  ///< of the upper bounds
    constexpr int lo(int i) const noexcept { return box_.lo[i]; }           ///< i must be an axis
    constexpr int hi(int i) const noexcept { return box_.hi[i]; }           ///< as lo

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(IPoint<3> const& p) const noexcept { return box_.contains(p); }  ///< within the bounds

    /// Grown by a point; the box around both; what both hold, or nothing().
    /// @{
    constexpr IExtent operator+(IPoint<3> const& p) const noexcept { return IExtent{*this} += p; }
    constexpr IExtent operator|(IExtent const& b) const noexcept { return IExtent{*this} |= b; }
    constexpr IExtent operator&(IExtent const& b) const noexcept { return IExtent{*this} &= b; }
    constexpr IExtent& operator+=(IPoint<3> const& p) noexcept {
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

    /// Written as (0,0,0):(1,1,1), or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, IExtent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<int, 3>;
    struct EverythingTag {};

    explicit constexpr IExtent(EverythingTag) noexcept : box_{Box::everything()} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};
