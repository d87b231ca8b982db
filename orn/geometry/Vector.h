/// Vectors of one to four double components. Vectors are row vectors: a matrix multiplies them from the right.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Angle.h"

#include <cmath>
#include <concepts>
#include <iosfwd>

template <int N>
class ORN_API_TEMPLATE Matrix;
/// A displacement: Vector<1> to Vector<3>, and the homogeneous Vector<4>.
template <int N>
class Vector;

/// A displacement along a line. The products with a matrix, v·m and v·m + t, are defined in orn/geometry/Matrix.h.
template <>
class ORN_API Vector<1> {
public:
    constexpr Vector() noexcept = default;  ///< zero
    /// From one component, or from an array as packToPod fills it.
    /// @{
    explicit constexpr Vector(double x) noexcept : x_{x} {}
    explicit constexpr Vector(std::integral auto x) noexcept : x_{static_cast<double>(x)} {}
    explicit constexpr Vector(double const* a) noexcept : x_{a[0]} {}
    /// @}

    Vector(Vector const& v, Matrix<1> const& m) noexcept;                   ///< v·m
    Vector(Vector const& v, Matrix<1> const& m, Vector const& t) noexcept;  ///< v·m + t + t: twice in this dimension

    constexpr double x() const noexcept { return x_; }                      ///< the component along x
    constexpr double operator[](int i) const noexcept { return (&x_)[i]; }  ///< i must be 0
    constexpr void packToPod(double* a) const noexcept { a[0] = x_; }       ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_; }             ///< any is NaN
    bool isFinite() const noexcept { return std::isfinite(x_); }           ///< none is infinite or NaN
    constexpr double lengthSquared() const noexcept { return x_ * x_; }    ///< may overflow, or vanish
    double length() const noexcept { return std::sqrt(lengthSquared()); }  ///< may overflow, or vanish
    Vector unit() const noexcept { return *this / length(); }              ///< ±1; NaN for zero

    /// Component by component.
    /// @{
    constexpr Vector operator-() const noexcept { return Vector{-x_}; }
    constexpr Vector operator+(Vector const& b) const noexcept { return Vector{x_ + b.x_}; }
    constexpr Vector operator-(Vector const& b) const noexcept { return Vector{x_ - b.x_}; }
    constexpr Vector operator*(double s) const noexcept { return Vector{x_ * s}; }
    friend constexpr Vector operator*(double s, Vector const& v) noexcept { return v * s; }
    constexpr Vector operator/(double s) const noexcept { return Vector{x_ / s}; }
    constexpr Vector& operator+=(Vector const& b) noexcept { return *this = *this + b; }
    constexpr Vector& operator-=(Vector const& b) noexcept { return *this = *this - b; }
    constexpr Vector& operator*=(double s) noexcept { return *this = *this * s; }
    constexpr Vector& operator/=(double s) noexcept { return *this = *this / s; }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Vector const& a, Vector const& b) noexcept { return a.isEql(b); }
    /// The scalar product.
    friend constexpr double dot(Vector const& a, Vector const& b) noexcept { return a.doDot(b); }
    friend std::wostream& operator<<(std::wostream& os, Vector const& v) { return v.putOn(os); }  ///< (x)

private:
    constexpr bool isEql(Vector const& b) const noexcept { return x_ == b.x_; }
    constexpr double doDot(Vector const& b) const noexcept { return x_ * b.x_; }
    std::wostream& putOn(std::wostream& os) const;

    double x_ = 0;
};

/// A displacement in the plane.
template <>
class ORN_API Vector<2> {
public:
    constexpr Vector() noexcept = default;                                              ///< zero
    constexpr Vector(double x, double y) noexcept : x_{x}, y_{y} {}                     ///< Cartesian
    constexpr Vector(double r, Angle a) noexcept : x_{r * a.cos()}, y_{r * a.sin()} {}  ///< polar
    explicit constexpr Vector(double const* a) noexcept
        : x_{a[0]}, y_{a[1]} {}                                             ///< from an array, as packToPod fills it
    Vector(Vector const& v, Matrix<2> const& m) noexcept;                   ///< v·m
    Vector(Vector const& v, Matrix<2> const& m, Vector const& t) noexcept;  ///< v·m + t

    constexpr double x() const noexcept { return x_; }                              ///< the component along x
    constexpr double y() const noexcept { return y_; }                              ///< along y
    constexpr double operator[](int i) const noexcept { return i == 0 ? x_ : y_; }  ///< any i but 0 gives y
    constexpr void packToPod(double* a) const noexcept { a[0] = x_, a[1] = y_; }    ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_ || y_ != y_; }             ///< any is NaN
    bool isFinite() const noexcept { return std::isfinite(x_) && std::isfinite(y_); }  ///< none is infinite or NaN
    constexpr double lengthSquared() const noexcept { return x_ * x_ + y_ * y_; }      ///< may overflow, or vanish
    double length() const noexcept { return std::sqrt(lengthSquared()); }              ///< may overflow, or vanish
    Vector unit() const noexcept { return *this / length(); }                          ///< NaN for zero; by length()
    constexpr Vector perpendicular() const noexcept { return {-y_, x_}; }              ///< a quarter turn anticlockwise
    Angle theta() const noexcept { return Angle::cosSin(x_, y_); }                     ///< by Angle::cosSin, as it says
    int quadrant() const noexcept;  ///< 1 to 4 anticlockwise from x, y ≥ 0; zero counts as positive, NaN as negative

    /// Component by component.
    /// @{
    constexpr Vector operator+() const noexcept { return *this; }
    constexpr Vector operator-() const noexcept { return {-x_, -y_}; }
    constexpr Vector operator+(Vector const& b) const noexcept { return {x_ + b.x_, y_ + b.y_}; }
    constexpr Vector operator-(Vector const& b) const noexcept { return {x_ - b.x_, y_ - b.y_}; }
    constexpr Vector operator*(double s) const noexcept { return {x_ * s, y_ * s}; }
    friend constexpr Vector operator*(double s, Vector const& v) noexcept { return v * s; }
    constexpr Vector operator/(double s) const noexcept { return {x_ / s, y_ / s}; }
    constexpr Vector const& operator+=(Vector const& b) noexcept { return *this = *this + b; }
    constexpr Vector const& operator-=(Vector const& b) noexcept { return *this = *this - b; }
    constexpr Vector const& operator*=(double s) noexcept { return *this = *this * s; }
    constexpr Vector const& operator/=(double s) noexcept { return *this = *this / s; }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Vector const& a, Vector const& b) noexcept { return a.x_ == b.x_ && a.y_ == b.y_; }
    /// The scalar product.
    friend constexpr double dot(Vector const& a, Vector const& b) noexcept { return a.x_ * b.x_ + a.y_ * b.y_; }

private:
    double x_ = 0;
    double y_ = 0;
};

/// A displacement in space.
template <>
class ORN_API Vector<3> {
public:
    constexpr Vector() noexcept = default;                                            ///< zero
    constexpr Vector(double x, double y, double z) noexcept : x_{x}, y_{y}, z_{z} {}  ///< Cartesian
    explicit constexpr Vector(double const* a) noexcept
        : x_{a[0]}, y_{a[1]}, z_{a[2]} {}                                   ///< from an array, as packToPod fills it
    Vector(Vector const& v, Matrix<3> const& m) noexcept;                   ///< v·m
    Vector(Vector const& v, Matrix<3> const& m, Vector const& t) noexcept;  ///< v·m + t

    /// From a length, an altitude above the x-y plane and an azimuth, a bearing from the y axis towards the x axis.
    static constexpr Vector altAz(double r, Angle alt, Angle az) noexcept {
        if (r == 0) return {};
        if (alt.cos() == 0) return {0, 0, r * alt.sin()};
        return {r * alt.cos() * az.sin(), r * alt.cos() * az.cos(), r * alt.sin()};
    }

    constexpr double x() const noexcept { return x_; }  ///< the component along x
    constexpr double y() const noexcept { return y_; }  ///< along y
    constexpr double z() const noexcept { return z_; }  ///< along z
    constexpr double operator[](int i) const noexcept { return i == 0 ? x_ : i == 1 ? y_ : z_; }  ///< else z
    constexpr void packToPod(double* a) const noexcept { a[0] = x_, a[1] = y_, a[2] = z_; }  ///< writes them in order

    constexpr bool isNaN() const noexcept { return x_ != x_ || y_ != y_ || z_ != z_; }  ///< any is NaN
    /// None is infinite or NaN.
    bool isFinite() const noexcept { return std::isfinite(x_) && std::isfinite(y_) && std::isfinite(z_); }
    /// May overflow, or vanish.
    constexpr double lengthSquared() const noexcept { return x_ * x_ + y_ * y_ + z_ * z_; }
    double length() const noexcept { return std::sqrt(lengthSquared()); }  ///< may overflow, or vanish
    Vector unit() const noexcept { return *this / length(); }              ///< NaN for zero; by length()
    /// −90° to 90°, and the bearing from the y axis towards the x axis: by Angle::cosSin, as it says. NaN for the zero
    /// vector, the azimuth along z too.
    /// @{
    Angle altitude() const noexcept { return Angle::cosSin(std::sqrt(x_ * x_ + y_ * y_), z_); }
    Angle azimuth() const noexcept { return Angle::cosSin(y_, x_); }
    /// @}

    /// Component by component.
    /// @{
    constexpr Vector operator+() const noexcept { return *this; }
    constexpr Vector operator-() const noexcept { return {-x_, -y_, -z_}; }
    constexpr Vector operator+(Vector const& b) const noexcept { return {x_ + b.x_, y_ + b.y_, z_ + b.z_}; }
    constexpr Vector operator-(Vector const& b) const noexcept { return {x_ - b.x_, y_ - b.y_, z_ - b.z_}; }
    constexpr Vector operator*(double s) const noexcept { return {x_ * s, y_ * s, z_ * s}; }
    friend constexpr Vector operator*(double s, Vector const& v) noexcept { return v * s; }
    constexpr Vector operator/(double s) const noexcept { return {x_ / s, y_ / s, z_ / s}; }
    constexpr Vector& operator+=(Vector const& b) noexcept { return *this = *this + b; }
    constexpr Vector& operator-=(Vector const& b) noexcept { return *this = *this - b; }
    constexpr Vector& operator*=(double s) noexcept { return *this = *this * s; }
    constexpr Vector& operator/=(double s) noexcept { return *this = *this / s; }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Vector const& a, Vector const& b) noexcept {
        return a.x_ == b.x_ && a.y_ == b.y_ && a.z_ == b.z_;
    }
    /// The scalar product.
    friend constexpr double dot(Vector const& a, Vector const& b) noexcept {
        return a.x_ * b.x_ + a.y_ * b.y_ + a.z_ * b.z_;
    }

private:
    double x_ = 0;
    double y_ = 0;
    double z_ = 0;
};

/// Homogeneous coordinates of space.
template <>
class ORN_API Vector<4> {
public:
    constexpr Vector() noexcept = default;                                                          ///< zero
    explicit constexpr Vector(double a, double b, double c, double d) noexcept : c_{a, b, c, d} {}  ///< by index
    explicit constexpr Vector(double const* a) noexcept
        : c_{a[0], a[1], a[2], a[3]} {}                                     ///< from an array, as packToPod fills it
    Vector(Vector const& v, Matrix<4> const& m) noexcept;                   ///< v·m
    Vector(Vector const& v, Matrix<4> const& m, Vector const& t) noexcept;  ///< v·m + t + t: twice in this dimension

    constexpr double operator[](int i) const noexcept { return c_[i]; }  ///< i must be 0 to 3
    /// Writes them in order.
    constexpr void packToPod(double* a) const noexcept { a[0] = c_[0], a[1] = c_[1], a[2] = c_[2], a[3] = c_[3]; }

    /// Any is NaN.
    constexpr bool isNaN() const noexcept {
        return c_[0] != c_[0] || c_[1] != c_[1] || c_[2] != c_[2] || c_[3] != c_[3];
    }

    /// None is infinite or NaN.
    bool isFinite() const noexcept {
        return std::isfinite(c_[0]) && std::isfinite(c_[1]) && std::isfinite(c_[2]) && std::isfinite(c_[3]);
    }
    constexpr double lengthSquared() const noexcept { return doDot(*this); }  ///< may overflow, or vanish
    double length() const noexcept { return std::sqrt(lengthSquared()); }     ///< may overflow, or vanish
    Vector unit() const noexcept { return *this / length(); }                 ///< NaN for zero; by length()

    /// Component by component.
    /// @{
    constexpr Vector operator+() const noexcept { return *this; }
    constexpr Vector operator-() const noexcept { return Vector{-c_[0], -c_[1], -c_[2], -c_[3]}; }
    constexpr Vector operator+(Vector const& b) const noexcept {
        return Vector{c_[0] + b.c_[0], c_[1] + b.c_[1], c_[2] + b.c_[2], c_[3] + b.c_[3]};
    }
    constexpr Vector operator-(Vector const& b) const noexcept {
        return Vector{c_[0] - b.c_[0], c_[1] - b.c_[1], c_[2] - b.c_[2], c_[3] - b.c_[3]};
    }
    constexpr Vector operator*(double s) const noexcept { return Vector{c_[0] * s, c_[1] * s, c_[2] * s, c_[3] * s}; }
    friend constexpr Vector operator*(double s, Vector const& v) noexcept { return v * s; }
    constexpr Vector operator/(double s) const noexcept { return Vector{c_[0] / s, c_[1] / s, c_[2] / s, c_[3] / s}; }
    constexpr Vector& operator+=(Vector const& b) noexcept { return *this = *this + b; }
    constexpr Vector& operator-=(Vector const& b) noexcept { return *this = *this - b; }
    constexpr Vector& operator*=(double s) noexcept { return *this = *this * s; }
    constexpr Vector& operator/=(double s) noexcept { return *this = *this / s; }
    /// @}

    /// Exact; NaN equals nothing.
    friend constexpr bool operator==(Vector const& a, Vector const& b) noexcept { return a.isEql(b); }
    /// The scalar product.
    friend constexpr double dot(Vector const& a, Vector const& b) noexcept { return a.doDot(b); }
    friend std::wostream& operator<<(std::wostream& os, Vector const& v) { return v.putOn(os); }  ///< (a,b,c,d)

private:
    constexpr bool isEql(Vector const& b) const noexcept {
        return c_[0] == b.c_[0] && c_[1] == b.c_[1] && c_[2] == b.c_[2] && c_[3] == b.c_[3];
    }
    constexpr double doDot(Vector const& b) const noexcept {
        return c_[0] * b.c_[0] + c_[1] * b.c_[1] + c_[2] * b.c_[2] + c_[3] * b.c_[3];
    }
    std::wostream& putOn(std::wostream& os) const;

    double c_[4] = {};
};

/// The signed area of the parallelogram: positive when b lies anticlockwise of a.
constexpr double cross(Vector<2> const& a, Vector<2> const& b) noexcept { return a.x() * b.y() - a.y() * b.x(); }

/// The vector product: right-handed, at right angles to both.
constexpr Vector<3> cross(Vector<3> const& a, Vector<3> const& b) noexcept {
    return {a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(), a.x() * b.y() - a.y() * b.x()};
}

/// Written as (x,y) and (x,y,z).
/// @{
ORN_API std::wostream& operator<<(std::wostream& os, Vector<2> const& v);
ORN_API std::wostream& operator<<(std::wostream& os, Vector<3> const& v);
/// @}

namespace ORN {

// For programs in which another library has such a name, too.
using ::Vector;

}
