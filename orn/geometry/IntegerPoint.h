/// Points and vectors of two and three int coordinates. Arithmetic beyond the range of int is the caller's to avoid.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <iosfwd>

/// A place among ints: IPoint<2>, IPoint<3>.
template <int N>
class IPoint;

/// A displacement in ints: IVector<2>, IVector<3>.
template <int N>
class IVector;

/// A displacement in the plane.
template <>
class ORN_API IVector<2> {
public:
    constexpr IVector() noexcept = default;                                    ///< zero
    constexpr IVector(int x, int y) noexcept : x_{x}, y_{y} {}                 ///< Cartesian
    explicit constexpr IVector(int const* a) noexcept : x_{a[0]}, y_{a[1]} {}  ///< from an array, as packToPod fills it

    constexpr int x() const noexcept { return x_; }                              ///< along x
    constexpr int y() const noexcept { return y_; }                              ///< along y
    constexpr int operator[](int i) const noexcept { return i == 0 ? x_ : y_; }  ///< else y
    constexpr void packToPod(int* a) const noexcept { a[0] = x_, a[1] = y_; }    ///< writes them in order
    /// As for doubles; ints are always finite.
    /// @{
    constexpr bool isNaN() const noexcept { return false; }
    constexpr bool isFinite() const noexcept { return true; }
    /// @}

    /// Component by component.
    /// @{
    constexpr IVector operator-() const noexcept { return {-x_, -y_}; }
    constexpr IVector operator+(IVector const& b) const noexcept { return {x_ + b.x_, y_ + b.y_}; }
    constexpr IVector operator-(IVector const& b) const noexcept { return {x_ - b.x_, y_ - b.y_}; }
    constexpr IVector operator*(int s) const noexcept { return {x_ * s, y_ * s}; }
    friend constexpr IVector operator*(int s, IVector const& v) noexcept { return v * s; }
    constexpr IVector const& operator+=(IVector const& b) noexcept { return *this = *this + b; }
    constexpr IVector const& operator-=(IVector const& b) noexcept { return *this = *this - b; }
    constexpr IVector const& operator*=(int s) noexcept { return *this = *this * s; }
    /// @}

    friend constexpr bool operator==(IVector const&, IVector const&) noexcept = default;  ///< in every component

private:
    int x_ = 0;
    int y_ = 0;
};

/// A displacement in space.
template <>
class ORN_API IVector<3> {
public:
    constexpr IVector() noexcept = default;                                   ///< zero
    constexpr IVector(int x, int y, int z) noexcept : x_{x}, y_{y}, z_{z} {}  ///< Cartesian
    explicit constexpr IVector(int const* a) noexcept
        : x_{a[0]}, y_{a[1]}, z_{a[2]} {}  ///< from an array, as packToPod fills it

    constexpr int x() const noexcept { return x_; }                                            ///< along x
    constexpr int y() const noexcept { return y_; }                                            ///< along y
    constexpr int z() const noexcept { return z_; }                                            ///< along z
    constexpr int operator[](int i) const noexcept { return i == 0 ? x_ : i == 1 ? y_ : z_; }  ///< else z
    constexpr void packToPod(int* a) const noexcept { a[0] = x_, a[1] = y_, a[2] = z_; }       ///< writes them in order
    /// As for doubles; ints are always finite.
    /// @{
    constexpr bool isNaN() const noexcept { return false; }
    constexpr bool isFinite() const noexcept { return true; }
    /// @}

    /// Component by component.
    /// @{
    constexpr IVector operator+() const noexcept { return *this; }
    constexpr IVector operator-() const noexcept { return {-x_, -y_, -z_}; }
    constexpr IVector operator+(IVector const& b) const noexcept { return {x_ + b.x_, y_ + b.y_, z_ + b.z_}; }
    constexpr IVector operator-(IVector const& b) const noexcept { return {x_ - b.x_, y_ - b.y_, z_ - b.z_}; }
    constexpr IVector operator*(int s) const noexcept { return {x_ * s, y_ * s, z_ * s}; }
    friend constexpr IVector operator*(int s, IVector const& v) noexcept { return v * s; }
    constexpr IVector const& operator+=(IVector const& b) noexcept { return *this = *this + b; }
    constexpr IVector const& operator-=(IVector const& b) noexcept { return *this = *this - b; }
    constexpr IVector const& operator*=(int s) noexcept { return *this = *this * s; }
    /// @}

    friend constexpr bool operator==(IVector const&, IVector const&) noexcept = default;  ///< in every component

private:
    int x_ = 0;
    int y_ = 0;
    int z_ = 0;
};

/// A place in the plane.
template <>
class ORN_API IPoint<2> {
public:
    static IPoint const m_origin;                                ///< all coordinates 0
    static IPoint const& origin() noexcept { return m_origin; }  ///< m_origin

    constexpr IPoint() noexcept = default;                                    ///< zero
    constexpr IPoint(int x, int y) noexcept : x_{x}, y_{y} {}                 ///< Cartesian
    explicit constexpr IPoint(int const* a) noexcept : x_{a[0]}, y_{a[1]} {}  ///< from an array, as packToPod fills it

    constexpr int x() const noexcept { return x_; }                              ///< along x
    constexpr int y() const noexcept { return y_; }                              ///< along y
    constexpr int operator[](int i) const noexcept { return i == 0 ? x_ : y_; }  ///< else y
    constexpr void packToPod(int* a) const noexcept { a[0] = x_, a[1] = y_; }    ///< writes them in order
    /// As for doubles; ints are always finite.
    /// @{
    constexpr bool isNaN() const noexcept { return false; }
    constexpr bool isFinite() const noexcept { return true; }
    /// @}

    /// Moves by the vector.
    /// @{
    constexpr IPoint& operator+=(IVector<2> const& v) noexcept { return *this = {x_ + v.x(), y_ + v.y()}; }
    constexpr IPoint& operator-=(IVector<2> const& v) noexcept { return *this = {x_ - v.x(), y_ - v.y()}; }
    /// @}

    friend constexpr bool operator==(IPoint const&, IPoint const&) noexcept = default;  ///< in every component

private:
    int x_ = 0;
    int y_ = 0;
};

/// A place in space.
template <>
class ORN_API IPoint<3> {
public:
    static IPoint const m_origin;                                ///< all coordinates 0
    static IPoint const& origin() noexcept { return m_origin; }  ///< m_origin

    constexpr IPoint() noexcept = default;                                   ///< zero
    constexpr IPoint(int x, int y, int z) noexcept : x_{x}, y_{y}, z_{z} {}  ///< Cartesian
    explicit constexpr IPoint(int const* a) noexcept
        : x_{a[0]}, y_{a[1]}, z_{a[2]} {}  ///< from an array, as packToPod fills it

    constexpr int x() const noexcept { return x_; }                                            ///< along x
    constexpr int y() const noexcept { return y_; }                                            ///< along y
    constexpr int z() const noexcept { return z_; }                                            ///< along z
    constexpr int operator[](int i) const noexcept { return i == 0 ? x_ : i == 1 ? y_ : z_; }  ///< else z
    constexpr void packToPod(int* a) const noexcept { a[0] = x_, a[1] = y_, a[2] = z_; }       ///< writes them in order
    /// As for doubles; ints are always finite.
    /// @{
    constexpr bool isNaN() const noexcept { return false; }
    constexpr bool isFinite() const noexcept { return true; }
    /// @}

    /// Moves by the vector.
    /// @{
    constexpr IPoint& operator+=(IVector<3> const& v) noexcept { return *this = {x_ + v.x(), y_ + v.y(), z_ + v.z()}; }
    constexpr IPoint& operator-=(IVector<3> const& v) noexcept { return *this = {x_ - v.x(), y_ - v.y(), z_ - v.z()}; }
    /// @}

    friend constexpr bool operator==(IPoint const&, IPoint const&) noexcept = default;  ///< in every component

private:
    int x_ = 0;
    int y_ = 0;
    int z_ = 0;
};

/// Vectors of ints have whole multiples only: a fraction would lose what is behind its point.
/// @{
template <int N, std::floating_point Fraction>
IVector<N> operator*(IVector<N> const&, Fraction) = delete;
template <int N, std::floating_point Fraction>
IVector<N> operator*(Fraction, IVector<N> const&) = delete;
template <int N, std::floating_point Fraction>
IVector<N> const& operator*=(IVector<N>&, Fraction) = delete;
/// @}

/// Written as (x,y) and (x,y,z).
/// @{
ORN_API std::wostream& operator<<(std::wostream& os, IVector<2> const& v);
ORN_API std::wostream& operator<<(std::wostream& os, IVector<3> const& v);
/// @}

namespace ORN {

// For programs in which another library has such a name, too.
using ::IPoint;
using ::IVector;

}
