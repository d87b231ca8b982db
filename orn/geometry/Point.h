/// Points of one to three double coordinates. A point and a vector give a point, two points a vector.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Vector.h"

#include <cmath>
#include <concepts>
#include <iosfwd>

/// A place: Point<1> on a line, Point<2> in the plane, Point<3> in space.
template <int N>
class Point;

template <int N>
class AffineTransform;
template <int N>
class UniformTransform;

/// A place on a line. The products with a matrix, p·m and p·m + t, are defined in orn/geometry/Matrix.h; transforms
/// use them.
template <>
class ORN_API Point<1> {
public:
    static Point const m_origin;                                ///< all coordinates 0
    static Point const& origin() noexcept { return m_origin; }  ///< m_origin

    constexpr Point() noexcept = default;  ///< the origin
    /// From one coordinate, or from an array as packToPod fills it.
    /// @{
    explicit constexpr Point(double x) noexcept : x_{x} {}
    explicit constexpr Point(std::integral auto x) noexcept : x_{static_cast<double>(x)} {}
    explicit constexpr Point(double const* a) noexcept : x_{a[0]} {}
    /// @}

    constexpr double x() const noexcept { return x_; }                      ///< the coordinate along x
    constexpr double operator[](int i) const noexcept { return (&x_)[i]; }  ///< i must be 0
    constexpr void packToPod(double* a) const noexcept { a[0] = x_; }       ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_; }    ///< any is NaN
    bool isFinite() const noexcept { return std::isfinite(x_); }  ///< none is infinite or NaN

    /// Moves by the vector.
    /// @{
    constexpr Point& operator+=(Vector<1> const& v) noexcept { return *this = *this + v; }
    constexpr Point& operator-=(Vector<1> const& v) noexcept { return *this = *this - v; }
    /// @}

    /// The point moved by the vector.
    /// @{
    friend constexpr Point operator+(Point const& p, Vector<1> const& v) noexcept { return Point{p.x_ + v.x()}; }
    friend constexpr Point operator+(Vector<1> const& v, Point const& p) noexcept { return p + v; }
    /// @}

    /// The point moved back by the vector, and the vector from b to a.
    /// @{
    friend constexpr Point operator-(Point const& p, Vector<1> const& v) noexcept { return Point{p.x_ - v.x()}; }
    friend constexpr Vector<1> operator-(Point const& a, Point const& b) noexcept { return Vector<1>{a.x_ - b.x_}; }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Point const& a, Point const& b) noexcept { return a.x_ == b.x_; }

private:
    template <int>
    friend class AffineTransform;

    explicit constexpr Point(Vector<1> const& v) noexcept : x_{v.x()} {}
    Point(Point const& p, Matrix<1> const& m) noexcept;
    Point(Point const& p, Matrix<1> const& m, Vector<1> const& t) noexcept;  ///< p·m + t + t: twice in this dimension

    double x_ = 0;
};

/// A place in the plane.
template <>
class ORN_API Point<2> {
public:
    static Point const m_origin;                                ///< all coordinates 0
    static Point const& origin() noexcept { return m_origin; }  ///< m_origin

    constexpr Point() noexcept = default;                           ///< the origin
    constexpr Point(double x, double y) noexcept : x_{x}, y_{y} {}  ///< Cartesian
    explicit constexpr Point(double const* a) noexcept
        : x_{a[0]}, y_{a[1]} {}  ///< from an array, as packToPod fills it

    constexpr double x() const noexcept { return x_; }                              ///< the coordinate along x
    constexpr double y() const noexcept { return y_; }                              ///< along y
    constexpr double operator[](int i) const noexcept { return i == 0 ? x_ : y_; }  ///< any i but 0 gives y
    constexpr void packToPod(double* a) const noexcept { a[0] = x_, a[1] = y_; }    ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_ || y_ != y_; }             ///< any is NaN
    bool isFinite() const noexcept { return std::isfinite(x_) && std::isfinite(y_); }  ///< none is infinite or NaN

    /// Moves by the vector.
    /// @{
    constexpr Point& operator+=(Vector<2> const& v) noexcept { return *this = *this + v; }
    constexpr Point& operator-=(Vector<2> const& v) noexcept { return *this = *this - v; }
    /// @}

    /// The point moved by the vector.
    /// @{
    friend constexpr Point operator+(Point const& p, Vector<2> const& v) noexcept {
        return {p.x_ + v.x(), p.y_ + v.y()};
    }
    friend constexpr Point operator+(Vector<2> const& v, Point const& p) noexcept { return p + v; }
    /// @}

    /// Differences are a + (0 − b), so that −0 less +0 is +0.
    /// @{
    friend constexpr Point operator-(Point const& p, Vector<2> const& v) noexcept {
        return {p.x_ + (0 - v.x()), p.y_ + (0 - v.y())};
    }
    friend constexpr Vector<2> operator-(Point const& a, Point const& b) noexcept {
        return {a.x_ + (0 - b.x_), a.y_ + (0 - b.y_)};
    }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Point const& a, Point const& b) noexcept { return a.x_ == b.x_ && a.y_ == b.y_; }

private:
    template <int>
    friend class AffineTransform;
    template <int>
    friend class UniformTransform;

    explicit constexpr Point(Vector<2> const& v) noexcept : x_{v.x()}, y_{v.y()} {}
    Point(Point const& p, Matrix<2> const& m) noexcept;
    Point(Point const& p, Matrix<2> const& m, Vector<2> const& t) noexcept;

    double x_ = 0;
    double y_ = 0;
};

/// A place in space.
template <>
class ORN_API Point<3> {
public:
    static Point const m_origin;                                ///< all coordinates 0
    static Point const& origin() noexcept { return m_origin; }  ///< m_origin

    constexpr Point() noexcept = default;                                            ///< the origin
    constexpr Point(double x, double y, double z) noexcept : x_{x}, y_{y}, z_{z} {}  ///< Cartesian
    explicit constexpr Point(double const* a) noexcept
        : x_{a[0]}, y_{a[1]}, z_{a[2]} {}  ///< from an array, as packToPod fills it

    constexpr double x() const noexcept { return x_; }  ///< the coordinate along x
    constexpr double y() const noexcept { return y_; }  ///< along y
    constexpr double z() const noexcept { return z_; }  ///< along z
    constexpr double operator[](int i) const noexcept { return i == 0 ? x_ : i == 1 ? y_ : z_; }  ///< else z
    constexpr void packToPod(double* a) const noexcept { a[0] = x_, a[1] = y_, a[2] = z_; }  ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_ || y_ != y_ || z_ != z_; }  ///< any is NaN
    /// None is infinite or NaN.
    bool isFinite() const noexcept { return std::isfinite(x_) && std::isfinite(y_) && std::isfinite(z_); }

    /// Moves by the vector.
    /// @{
    constexpr Point& operator+=(Vector<3> const& v) noexcept { return *this = *this + v; }
    constexpr Point& operator-=(Vector<3> const& v) noexcept { return *this = *this - v; }
    /// @}

    /// The point moved by the vector.
    /// @{
    friend constexpr Point operator+(Point const& p, Vector<3> const& v) noexcept {
        return {p.x_ + v.x(), p.y_ + v.y(), p.z_ + v.z()};
    }
    friend constexpr Point operator+(Vector<3> const& v, Point const& p) noexcept { return p + v; }
    /// @}

    /// Differences are a + (0 − b), so that −0 less +0 is +0.
    /// @{
    friend constexpr Point operator-(Point const& p, Vector<3> const& v) noexcept {
        return {p.x_ + (0 - v.x()), p.y_ + (0 - v.y()), p.z_ + (0 - v.z())};
    }
    friend constexpr Vector<3> operator-(Point const& a, Point const& b) noexcept {
        return {a.x_ + (0 - b.x_), a.y_ + (0 - b.y_), a.z_ + (0 - b.z_)};
    }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Point const& a, Point const& b) noexcept {
        return a.x_ == b.x_ && a.y_ == b.y_ && a.z_ == b.z_;
    }

private:
    template <int>
    friend class AffineTransform;
    template <int>
    friend class UniformTransform;

    explicit constexpr Point(Vector<3> const& v) noexcept : x_{v.x()}, y_{v.y()}, z_{v.z()} {}
    Point(Point const& p, Matrix<3> const& m) noexcept;
    Point(Point const& p, Matrix<3> const& m, Vector<3> const& t) noexcept;

    double x_ = 0;
    double y_ = 0;
    double z_ = 0;
};

/// Interpolates on the way from a (t = 0) to b (t = 1). It meets both ends exactly when they are finite, and extrapolates
/// for any other t.
/// @{
constexpr Point<1> interp(Point<1> const& a, Point<1> const& b, double t) noexcept {
    return Point<1>{(1 - t) * a.x() + t * b.x()};
}
constexpr Point<2> interp(Point<2> const& a, Point<2> const& b, double t) noexcept {
    return {(1 - t) * a.x() + t * b.x(), (1 - t) * a.y() + t * b.y()};
}
constexpr Point<3> interp(Point<3> const& a, Point<3> const& b, double t) noexcept {
    return {(1 - t) * a.x() + t * b.x(), (1 - t) * a.y() + t * b.y(), (1 - t) * a.z() + t * b.z()};
}
/// @}

/// Returns half of the sum of both points. The sum may overflow.
/// @{
constexpr Point<1> midpoint(Point<1> const& a, Point<1> const& b) noexcept { return Point<1>{(a.x() + b.x()) * 0.5}; }
constexpr Point<2> midpoint(Point<2> const& a, Point<2> const& b) noexcept {
    return {(a.x() + b.x()) * 0.5, (a.y() + b.y()) * 0.5};
}
constexpr Point<3> midpoint(Point<3> const& a, Point<3> const& b) noexcept {
    return {(a.x() + b.x()) * 0.5, (a.y() + b.y()) * 0.5, (a.z() + b.z()) * 0.5};
}
/// @}

/// Written as (x), (x,y) and (x,y,z).
/// @{
ORN_API std::wostream& operator<<(std::wostream& os, Point<1> const& p);
ORN_API std::wostream& operator<<(std::wostream& os, Point<2> const& p);
ORN_API std::wostream& operator<<(std::wostream& os, Point<3> const& p);
/// @}

namespace ORN {

// For programs in which another library has such a name, too.
using ::Point;

}
