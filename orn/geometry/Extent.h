/// Axis-aligned boxes of doubles, one to three dimensions.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Point.h"

#include <iosfwd>
#include <limits>

namespace ORN {

/// What the extents of every dimension and component type do alike, axis by axis. Every comparison stands as it must
/// for NaN, which is false in each.
template <class T, int N>
struct Bounds {
    /// The extremes of the component type.
    /// @{
    static constexpr T least = std::numeric_limits<T>::lowest();
    static constexpr T most = (std::numeric_limits<T>::max)();
    /// @}

    T lo[N];  ///< the lower bounds
    T hi[N];  ///< the upper bounds

    /// The same interval on every axis.
    static constexpr Bounds filled(T low, T high) noexcept {
        Bounds all{};
        for (int i = 0; i < N; ++i) all.lo[i] = low, all.hi[i] = high;
        return all;
    }
    static constexpr Bounds everything() noexcept { return filled(least, most); }  ///< from least to most
    static constexpr Bounds nothing() noexcept { return filled(most, least); }     ///< from most to least

    /// Around two points, in any order.
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

    /// Row 0 is lo, row 1 hi; not ordered.
    /// @{
    static constexpr Bounds fromRows(T const (*rows)[N]) noexcept {
        Bounds box{};
        for (int i = 0; i < N; ++i) box.lo[i] = rows[0][i], box.hi[i] = rows[1][i];
        return box;
    }
    constexpr void packToPod(T (*rows)[N]) const noexcept {
        for (int i = 0; i < N; ++i) rows[0][i] = lo[i], rows[1][i] = hi[i];
    }
    /// @}

    /// Grows to hold the point.
    template <class P>
    constexpr void include(P const& p) noexcept {
        for (int i = 0; i < N; ++i) {
            T const c = p[i];
            if (lo[i] > c) lo[i] = c;
            if (c > hi[i]) hi[i] = c;
        }
    }

    /// Grows to hold the other.
    constexpr void unite(Bounds const& b) noexcept {
        for (int i = 0; i < N; ++i) {
            if (lo[i] > b.lo[i]) lo[i] = b.lo[i];
            if (b.hi[i] > hi[i]) hi[i] = b.hi[i];
        }
    }

    /// Shrinks to what both hold, or to nothing().
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

    /// Both bounds are inclusive; true for NaN.
    template <class P>
    constexpr bool contains(P const& p) const noexcept {
        for (int i = 0; i < N; ++i)
            if (lo[i] > p[i] || p[i] > hi[i]) return false;
        return true;
    }

    /// Whether lo > hi on some axis.
    constexpr bool degenerate() const noexcept {
        for (int i = 0; i < N; ++i)
            if (lo[i] > hi[i]) return true;
        return false;
    }

    /// Whether the other holds every bound.
    constexpr bool within(Bounds const& b) const noexcept {
        for (int i = 0; i < N; ++i)
            if (b.lo[i] > lo[i] || hi[i] > b.hi[i]) return false;
        return true;
    }

    /// Whether all bounds are equal.
    constexpr bool same(Bounds const& b) const noexcept {
        for (int i = 0; i < N; ++i)
            if (!(lo[i] == b.lo[i] && hi[i] == b.hi[i])) return false;
        return true;
    }

    /// Every side moved out by d; nothing() when shrunk past the centre.
    constexpr Bounds dilated(T d) const noexcept {
        Bounds box{};
        for (int i = 0; i < N; ++i) box.lo[i] = lo[i] - d, box.hi[i] = hi[i] + d;
        return box.degenerate() ? nothing() : box;
    }

    /// See Extent<1>::update.
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

/// A box along the axes: Extent<1>, Extent<2>, Extent<3>.
template <int N>
class Extent;

/// A box is degenerate (empty) when lo > hi on some axis; a single point is not. The empty box has one canonical value,
/// nothing(), which is the identity of | and what & gives for disjoint boxes. Both bounds are inclusive. Boxes are ordered
/// by containment: a < b means that a lies within b and differs from it.
template <>
class ORN_API Extent<1> {
public:
    static Extent const m_everything;  ///< every bound an extreme of the component type
    static Extent const m_nothing;     ///< the canonical empty box
    static Extent const& everything() noexcept { return m_everything; }  ///< m_everything
    static Extent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr Extent() noexcept = default;                                                        ///< nothing()
    constexpr Extent(Point<1> const& a, Point<1> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr Extent(double const (*rows)[1]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(double (*rows)[1]) const noexcept { box_.packToPod(rows); }        ///< lo, hi

    constexpr Point<1> lo() const noexcept { return Point<1>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr Point<1> hi() const noexcept { return Point<1>{box_.hi}; }  ///< of the upper bounds
    constexpr double lo(int i) const noexcept { return box_.lo[i]; }      ///< i must be an axis
    constexpr double hi(int i) const noexcept { return box_.hi[i]; }      ///< as lo
    /// Half of the sum of the bounds.
    constexpr Point<1> centre() const noexcept { return Point<1>{(box_.lo[0] + box_.hi[0]) * 0.5}; }
    constexpr Point<1> corner(unsigned int k) const noexcept {  ///< bit i of k: hi on axis i, else lo
        return Point<1>{(k & 1u ? box_.hi : box_.lo)[0]};
    }

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(Point<1> const& p) const noexcept { return box_.contains(p); }  ///< true for NaN

    /// Grown by a point; the box around both; what both hold, or nothing().
    /// @{
    constexpr Extent operator+(Point<1> const& p) const noexcept { return Extent{*this} += p; }
    constexpr Extent operator|(Extent const& b) const noexcept { return Extent{*this} |= b; }
    constexpr Extent operator&(Extent const& b) const noexcept { return Extent{*this} &= b; }
    constexpr Extent& operator+=(Point<1> const& p) noexcept {
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

    /// Written as (0):(1), or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, Extent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<double, 1>;
    struct EverythingTag {};

    explicit constexpr Extent(EverythingTag) noexcept : box_{Box::everything()} {}
    explicit constexpr Extent(Box const& box) noexcept : box_{box} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};

/// A box of the plane, by the rules of Extent<1>.
template <>
class ORN_API Extent<2> {
public:
    static Extent const m_everything;  ///< every bound an extreme of the component type
    static Extent const m_nothing;     ///< the canonical empty box
    static Extent const& everything() noexcept { return m_everything; }  ///< m_everything
    static Extent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr Extent() noexcept = default;                                                        ///< nothing()
    constexpr Extent(Point<2> const& a, Point<2> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr Extent(double const (*rows)[2]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(double (*rows)[2]) const noexcept { box_.packToPod(rows); }        ///< lo, hi

    constexpr Point<2> lo() const noexcept { return Point<2>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr Point<2> hi() const noexcept { return Point<2>{box_.hi}; }  ///< of the upper bounds
    constexpr double lo(int i) const noexcept { return box_.lo[i]; }      ///< i must be an axis
    constexpr double hi(int i) const noexcept { return box_.hi[i]; }      ///< as lo
    constexpr Point<2> centre() const noexcept {                          ///< half of the sum of the bounds
        return {(box_.lo[0] + box_.hi[0]) * 0.5, (box_.lo[1] + box_.hi[1]) * 0.5};
    }
    constexpr Point<2> corner(unsigned int k) const noexcept {  ///< bit i of k: hi on axis i, else lo
        return {(k & 1u ? box_.hi : box_.lo)[0], (k & 2u ? box_.hi : box_.lo)[1]};
    }

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(Point<2> const& p) const noexcept { return box_.contains(p); }  ///< true for NaN

    /// Grown by a point; the box around both; what both hold, or nothing().
    /// @{
    constexpr Extent operator+(Point<2> const& p) const noexcept { return Extent{*this} += p; }
    constexpr Extent operator|(Extent const& b) const noexcept { return Extent{*this} |= b; }
    constexpr Extent operator&(Extent const& b) const noexcept { return Extent{*this} &= b; }
    constexpr Extent& operator+=(Point<2> const& p) noexcept {
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

    /// Written as (0,0):(1,1), or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, Extent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<double, 2>;
    struct EverythingTag {};

    explicit constexpr Extent(EverythingTag) noexcept : box_{Box::everything()} {}
    explicit constexpr Extent(Box const& box) noexcept : box_{box} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};

/// A box of space, by the rules of Extent<1>.
template <>
class ORN_API Extent<3> {
public:
    static Extent const m_everything;  ///< every bound an extreme of the component type
    static Extent const m_nothing;     ///< the canonical empty box
    static Extent const& everything() noexcept { return m_everything; }  ///< m_everything
    static Extent const& nothing() noexcept { return m_nothing; }        ///< m_nothing

    constexpr Extent() noexcept = default;                                                        ///< nothing()
    constexpr Extent(Point<3> const& a, Point<3> const& b) noexcept : box_{Box::around(a, b)} {}  ///< in any order
    explicit constexpr Extent(double const (*rows)[3]) noexcept : box_{Box::fromRows(rows)} {}  ///< lo, hi; not ordered
    constexpr void packToPod(double (*rows)[3]) const noexcept { box_.packToPod(rows); }        ///< lo, hi

    constexpr Point<3> lo() const noexcept { return Point<3>{box_.lo}; }  ///< the corner of the lower bounds
    constexpr Point<3> hi() const noexcept { return Point<3>{box_.hi}; }  ///< of the upper bounds
    constexpr double lo(int i) const noexcept { return box_.lo[i]; }      ///< i must be an axis
    constexpr double hi(int i) const noexcept { return box_.hi[i]; }      ///< as lo
    constexpr Point<3> centre() const noexcept {                          ///< half of the sum of the bounds
        return {(box_.lo[0] + box_.hi[0]) * 0.5, (box_.lo[1] + box_.hi[1]) * 0.5, (box_.lo[2] + box_.hi[2]) * 0.5};
    }
    constexpr Point<3> corner(unsigned int k) const noexcept {  ///< bit i of k: hi on axis i, else lo
        return {(k & 1u ? box_.hi : box_.lo)[0], (k & 2u ? box_.hi : box_.lo)[1], (k & 4u ? box_.hi : box_.lo)[2]};
    }

    constexpr bool degenerate() const noexcept { return box_.degenerate(); }  ///< empty: lo > hi on some axis
    constexpr bool contains(Point<3> const& p) const noexcept { return box_.contains(p); }  ///< true for NaN

    /// Grown by a point; the box around both; what both hold, or nothing().
    /// @{
    constexpr Extent operator+(Point<3> const& p) const noexcept { return Extent{*this} += p; }
    constexpr Extent operator|(Extent const& b) const noexcept { return Extent{*this} |= b; }
    constexpr Extent operator&(Extent const& b) const noexcept { return Extent{*this} &= b; }
    constexpr Extent& operator+=(Point<3> const& p) noexcept {
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

    /// Written as (0,0,0):(1,1,1), or as degenerate.
    friend std::wostream& operator<<(std::wostream& os, Extent const& e) { return e.putOn(os); }

private:
    using Box = ORN::Bounds<double, 3>;
    struct EverythingTag {};

    explicit constexpr Extent(EverythingTag) noexcept : box_{Box::everything()} {}
    explicit constexpr Extent(Box const& box) noexcept : box_{box} {}
    std::wostream& putOn(std::wostream& os) const;

    Box box_ = Box::nothing();
};
