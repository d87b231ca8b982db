#include "orn/geometry/ArcFunctions.h"

#include "orn/geometry/Elementary.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace {

constexpr double epsilon = 2.220446049250313e-16;
constexpr double fullTurn = 6.283185307179586;

// Squares of the bulge from just above 1e-6 to 25, where the closed formula is accurate. The bits of positive doubles are
// ordered as the doubles, so one subtraction tells what lies outside: less, more and NaN.
constexpr std::uint64_t leastClosed = std::bit_cast<std::uint64_t>(1e-6) + 1;
constexpr std::uint64_t mostClosed = std::bit_cast<std::uint64_t>(25.0);

// A nearly full circle is the whole circle less the arc that completes it. A nearly straight arc, up to the straight
// segment, is a series.
[[gnu::noinline]] double lengthBeyondClosedFormula(double bulge, double q) noexcept {
    if (q > 25) return std::fabs((q + 1) / (4 * bulge)) * fullTurn - ORNArcLength(1 / bulge);
    double const second = 2 * q / 3;
    return 1 + second - second * q / 5;
}

// The closed formula, for a bulge whose square q is neither tiny nor large. Its q + 1 over four times the bulge is the
// radius, four times the bulge's arc tangent the included angle.
double segmentArea(double bulge, double q) noexcept {
    double const s = 2 * bulge / (q + 1);
    double const k = (1 - q) / (2 * bulge);
    return (2 * ORN::arcTangent(bulge) / (s * s) - k) * 0.25;
}

// The height of an arc's point less that of its chord, where the closed formula would cancel. With q the bulge's square
// and u the parameter's.
double flatHeight(double bulge, double q, double u) noexcept {
    double const s1 = (u - 1) / 6;
    double const s2 = ((-5 - 2 * u) * u + 7) / 90;
    double const s3 = (((u + 14) * u + 14) * u - 29) / 630;
    double const s4 = ((((-75 - 2 * u) * u - 546) * u - 250) * u + 873) / 28350;
    double const s5 = (((((2 * u + 154) * u + 3036) * u + 15202) * u + 2387) * u - 20781) / 935550;
    return ((((((s5 * q + s4) * q + s3) * q + s2) * q + s1) * q - 0.5) * u + 0.5) * bulge;
}

// The bulges of the parts up to the parameter t and from it on, a being the arc tangent of the whole one. The one that is
// the less is computed, and the other follows from the tangent of a difference without cancelling; the ends and the
// midpoint get what they should, without rounding.
void splitBulges(double t, double a, double bulge, double* first, double* second) noexcept {
    double const least = ORN::tangent((1 - std::fabs(t)) * a * 0.5);
    double const other = t == 0                ? least
                         : std::fabs(t) <= 1.0 ? (bulge - least) / (1 + bulge * least)
                                               : ORN::tangent((1 + std::fabs(t)) * a * 0.5);
    *first = t < 0 ? least : other;
    *second = t < 0 ? other : least;
}

}

double ORNArcLength(double bulge) noexcept {
    double const q = bulge * bulge;
    if (std::bit_cast<std::uint64_t>(q) - leastClosed > mostClosed - leastClosed)
        return lengthBeyondClosedFormula(bulge, q);
    return ORN::arcTangent(bulge) * (q + 1) / bulge;
}

double ORNArcSegmentArea(double bulge) noexcept {
    if (bulge == 0) return 0;
    double const q = bulge * bulge;
    if (q > 0.04) return segmentArea(bulge, q);

    double sum = bulge / 3;
    if (q < epsilon) return sum;  // also where the sum vanishes, and no quotient can be formed
    double term = sum * q / 5;
    double denominator = 5, numerator = 1;
    while (std::fabs(term / sum) >= epsilon) {
        sum += term;
        denominator += 2;
        numerator -= 2;
        term = term * numerator / denominator * q;
    }
    return sum;
}

double ORNArcSegmentCoG(double bulge) noexcept {
    if (bulge == 0) return 0;
    double const q = bulge * bulge;
    if (q > 0.125) {
        double const k = (1 - q) / (2 * bulge);
        return 1 / (segmentArea(bulge, q) * 12) - k * 0.5;
    }
    // From q¹¹ down to q⁰.
    static constexpr double coefficients[] = {0.00011880736447861843, -0.00015729578935227485, 0.00021399882485020517,
                                              -0.0003006639602552092, 0.0004389102190414338,   -0.0006707292449314058,
                                              0.00108291585058932,    -0.0018684401312972741,  0.003495856524427953,
                                              -0.007238095238095238,  0.017142857142857144,    0.2};
    double sum = 0;
    for (double const coefficient : coefficients) sum = sum * q + coefficient;
    return bulge * sum;
}

void ORNArcSplit(double t, double bulge, double* first, double* height, double* along, double* tangentY,
                 double* tangentX, double* second) noexcept {
    double const q = bulge * bulge;
    double const u = t * t;
    if (q < epsilon) {
        *first = (t + 1) * bulge * 0.5;
        *height = (1 - u) * bulge * 0.5;
        *along = t * 0.5;
        *tangentY = t * -2 * bulge;
        *tangentX = 1;
        *second = (1 - t) * bulge * 0.5;
        return;
    }
    double const a = ORN::arcTangent(bulge);
    double const phi = 2 * t * a;
    auto const [sine, cosine] = ORN::sineAndCosine(phi);
    double const radius = (1 / bulge + bulge) * 0.25;
    splitBulges(t, a, bulge, first, second);
    *tangentY = -sine;
    *tangentX = cosine;
    *along = radius * sine;
    *height = q < 0.01 ? flatHeight(bulge, q, u) : radius * cosine - (1 / bulge - bulge) * 0.25;
}
