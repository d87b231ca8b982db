/// A plane angle, held as its cosine and sine: no range and no wrap-around to manage.
#pragma once

#include "orn/Export.h"

#include <cmath>
#include <concepts>
#include <iosfwd>

/// 370° and 10° are the same value; sums and differences are rotations, composed by complex multiplication and not
/// normalised again. The number of degrees or radians exists only when asked for, in the principal range. Results are the
/// same on every system while the processor rounds to nearest; in another mode of rounding their last digits differ.
class ORN_API Angle {
public:
    static constexpr double pi = 3.141592653589793;  ///< the double nearest to pi

    constexpr Angle() noexcept = default;  ///< zero
    /// Takes a number of any size. The angle is NaN when the number is not finite.
    /// @{
    static Angle degrees(double d) noexcept;
    static Angle radians(double r) noexcept;
    /// @}

    /// The direction of the vector (c, s), by c² + s²; NaN for (0, 0). Where the square overflows (beyond 1e154) both
    /// cosine and sine are 0, which reads as 0 degrees; where it vanishes (below 1e-162) they are not finite, and they
    /// are inexact below 1e-154.
    static Angle cosSin(double c, double s) noexcept;

    /// From −1 to 1, but for rounding errors: sums and differences gather them.
    /// @{
    constexpr double cos() const noexcept { return cosine_; }
    constexpr double sin() const noexcept { return sine_; }
    /// @}
    constexpr double tan() const noexcept { return sine_ / cosine_; }  ///< huge or infinite at a right angle
    double radians() const noexcept;                                   ///< in [−π, π]
    double degrees() const noexcept;                                   ///< in [−180, 180]

    /// Neither cosine nor sine is infinite or NaN.
    bool isFinite() const noexcept { return std::isfinite(cosine_) && std::isfinite(sine_); }

    constexpr Angle operator+() const noexcept { return *this; }              ///< a copy
    constexpr Angle operator-() const noexcept { return {cosine_, -sine_}; }  ///< turns the other way
    /// Turns by one angle and then by the other, or by its opposite.
    /// @{
    constexpr Angle operator+(Angle const& b) const noexcept {
        return {cosine_ * b.cosine_ - sine_ * b.sine_, cosine_ * b.sine_ + sine_ * b.cosine_};
    }
    constexpr Angle operator-(Angle const& b) const noexcept {
        return {cosine_ * b.cosine_ + sine_ * b.sine_, sine_ * b.cosine_ - cosine_ * b.sine_};
    }
    constexpr Angle& operator+=(Angle const& b) noexcept { return *this = *this + b; }
    constexpr Angle& operator-=(Angle const& b) noexcept { return *this = *this - b; }
    /// @}

    Angle operator*(int n) const noexcept;  ///< n times the principal value, of unit length again
    /// Becomes n times its principal value, of unit length again.
    Angle& operator*=(int n) noexcept { return *this = *this * n; }

    /// Angles have whole multiples only: a fraction would lose what is behind its point.
    /// @{
    template <std::floating_point Fraction>
    Angle operator*(Fraction) const = delete;
    template <std::floating_point Fraction>
    Angle& operator*=(Fraction) = delete;
    /// @}

private:
    constexpr Angle(double cosine, double sine) noexcept : cosine_{cosine}, sine_{sine} {}

    constexpr bool equals(Angle const& b) const noexcept { return cosine_ == b.cosine_ && sine_ == b.sine_; }

    double cosine_ = 1;
    double sine_ = 0;
};

/// Whether the difference of two angles, taken the short way round, is strictly less than a tolerance; false for NaN.
/// @{
ORN_API bool closerThanDegrees(Angle const& a, Angle const& b, double tolerance) noexcept;
ORN_API bool closerThanRadians(Angle const& a, Angle const& b, double tolerance) noexcept;
/// @}

/// Writes the number of degrees.
ORN_API std::wostream& operator<<(std::wostream& os, Angle const& angle);

namespace ORN {

// For programs in which another library has such a name, too.
using ::Angle;

}
