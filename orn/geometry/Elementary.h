// The elementary functions that geometry needs: the same doubles on every system, which no toolchain's are.
#pragma once

namespace ORN {

struct SineCosine {
    double sine, cosine;
};

/// Every result is within 0.55 units in the last place of the true value, for every double. Odd functions are exactly
/// odd, even ones exactly even; zeros keep their sign, and an infinity or NaN gives what the C standard says. Nothing
/// but the four operations and the square root is asked of the processor, so results are equal wherever doubles are
/// IEEE's, rounded to nearest, and nothing is contracted. A finite argument never raises the flag of an invalid operation.
/// When a program has chosen another direction of rounding, sines and cosines are still within 1e-15 of the true value, and
/// nothing is read beyond a table.
/// @{
SineCosine sineAndCosine(double radians) noexcept;
double tangent(double radians) noexcept;
double arcTangent(double x) noexcept;            ///< −π/2 to π/2
double arcTangent(double y, double x) noexcept;  ///< the direction of (x, y), in [−π, π]
double cubeRoot(double x) noexcept;
double hypotenuse(double x, double y) noexcept;  ///< √(x² + y²); no step overflows or underflows before the result does
/// @}

}
