// Sums and products that a double does not hold are carried as a double and its rest, by the exact transformations of
// T. J. Dekker, "A floating-point technique for extending the available precision", 1971: of a sum whose first term is
// the greater one, a + b = s + (b − (s − a)); of a product, by factors cut to 26 binary digits, so that no product of
// two parts is rounded. The tables are written by tools/make-elementary-tables.
#include "orn/geometry/Elementary.h"

#include "orn/geometry/ElementaryTableImp.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ORN {

namespace {

using namespace elementary;
using std::bit_cast;
using std::uint64_t;

constexpr uint64_t signBit = 0x8000000000000000;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double signs[2] = {1, -1};
constexpr double roundsToWhole = 0x1.8p52;  // added and subtracted again; the sum's last digits are the whole number's

double lesser(double a, double b) noexcept { return a < b ? a : b; }
double greater(double a, double b) noexcept { return a > b ? a : b; }
uint64_t bitsOf(double x) noexcept { return bit_cast<uint64_t>(x); }
uint64_t signOf(double x) noexcept { return bitsOf(x) & signBit; }
double flipped(double x, uint64_t sign) noexcept { return bit_cast<double>(bitsOf(x) ^ sign); }
int exponentOf(double x) noexcept { return static_cast<int>(bitsOf(x) >> 52 & 0x7ff); }

// A power of two between the least and the greatest normal double.
double power(int exponent) noexcept { return bit_cast<double>(static_cast<uint64_t>(1023 + exponent) << 52); }

// The first 26 binary digits.
double cut(double x) noexcept { return bit_cast<double>(bitsOf(x) & 0xfffffffff8000000); }

struct Pair {
    double high, low;
};

// Of a sum whose first term is the greater one, or 0.
Pair sum(double a, double b) noexcept {
    double const s = a + b;
    return {s, b - (s - a)};
}

Pair product(double a, double b) noexcept {
    double const p = a * b, a1 = cut(a), b1 = cut(b), a2 = a - a1, b2 = b - b1;
    return {p, ((a1 * b1 - p) + (a1 * b2 + a2 * b1)) + a2 * b2};
}

// What an angle is beyond a number of right angles: from −π/4 to π/4.
struct Reduced {
    double high, low;
    uint64_t rightAngles;  // modulo 4
};

// A number of 128 bits.
struct Wide {
    uint64_t high, low;
};

// By halves: not every compiler has a type for it, and nothing here is urgent.
Wide wideProduct(uint64_t a, uint64_t b) noexcept {
    uint64_t const a1 = a >> 32, a2 = a & 0xffffffff, b1 = b >> 32, b2 = b & 0xffffffff;
    uint64_t const low = a2 * b2;
    uint64_t const middle = a1 * b2 + (low >> 32);
    uint64_t const other = a2 * b1 + (middle & 0xffffffff);
    return {a1 * b1 + (middle >> 32) + (other >> 32), other << 32 | (low & 0xffffffff)};
}

// M. H. Payne and R. N. Hanek, "Radian reduction for trigonometric functions", 1983: of the binary digits of 2 / π, only
// those matter that make no multiple of 4 with the argument and that the result can hold. No double is nearer to a multiple
// of π / 2 than 2^-62 right angles, and 126 digits behind the point are kept.
[[gnu::noinline]] Reduced reducedGreat(double x) noexcept {
    uint64_t const mantissa = (bitsOf(x) & 0xfffffffffffff) | 0x10000000000000;
    unsigned const first = static_cast<unsigned>(exponentOf(x) - 1075 + 62);
    uint64_t const* const word = twoOverPi + first / 64;
    unsigned const shift = first % 64;
    auto const digits = [word, shift](int i) {
        return shift == 0 ? word[i] : word[i] << shift | word[i + 1] >> (64 - shift);
    };
    Wide const low = wideProduct(digits(2), mantissa);
    Wide whole = wideProduct(digits(1), mantissa);
    whole.low += low.high;
    whole.high += digits(0) * mantissa + (whole.low < low.high);

    // Two digits before the point; the fraction, taken as a signed number, is that from the nearest whole one.
    Wide fraction{whole.high << 2 | whole.low >> 62, whole.low << 2 | low.low >> 62};
    uint64_t const negative = fraction.high >> 63;
    uint64_t const count = (whole.high >> 62) + negative;
    if (negative) fraction = {~fraction.high + (fraction.low == 0), -fraction.low};
    int const zeros = fraction.high ? std::countl_zero(fraction.high) : 64 + std::countl_zero(fraction.low);
    if (zeros >= 64) fraction = {fraction.low, 0};
    if (int const left = zeros % 64) {
        fraction = {fraction.high << left | fraction.low >> (64 - left), fraction.low << left};
    }
    auto const next53 = [](uint64_t bits) {
        return static_cast<double>(static_cast<std::int64_t>(bits & 0x1fffffffffffff));
    };
    double const high = next53(fraction.high >> 11) * power(-53 - zeros);
    double const rest = next53(fraction.high << 42 | fraction.low >> 22) * power(-106 - zeros);

    Pair const turned = product(high, rightAngle[0]);
    Pair const result = sum(turned.high, turned.low + (high * rightAngle[1] + rest * rightAngle[0]));
    uint64_t const sign = signOf(x) ^ negative << 63;
    return {flipped(result.high, sign), flipped(result.low, sign), signOf(x) ? -count : count};
}

// W. J. Cody and W. Waite, "Software manual for the elementary functions", 1980: the multiple of π / 2 is subtracted in
// parts, the first two of which are exact products. Where so much cancels that the third part is too short, and for
// arguments from 2^20 on, the digits of 2 / π are asked. So they are when a program does not round to nearest: n may be the
// next whole number then, and the tables reach little further than π / 4.
Reduced reduced(double x) noexcept {
    if (std::fabs(x) < 0x1.92p-1) return {x, 0, 0};
    if (std::fabs(x) < 0x1p20) [[likely]] {
        double const shifted = x * rightAnglesPerRadian + roundsToWhole;
        double const n = shifted - roundsToWhole;
        double const a = x - n * rightAngleParts[0];
        double const b = n * rightAngleParts[1];
        double const high = a - b;
        double const part = high - a;  // Knuth's sum: here b may be the greater term
        double const low = (a - (high - part)) - (b + part) - n * rightAngleParts[2];
        if (std::fabs(high) >= std::fabs(n) * 0x1p-58 && std::fabs(high) < 0x1.93p-1) [[likely]] {
            Pair const r = sum(high, low);
            return {r.high, r.low, bitsOf(shifted)};
        }
    }
    return reducedGreat(x);
}

// A sine and a cosine side by side: what is done to both is done at once, with the bits of one after the other.
using Twin [[gnu::vector_size(16)]] = double;
using TwinBits [[gnu::vector_size(16)]] = std::int64_t;

// Of an angle from −π/4 to π/4, each as a double and its rest.
struct SinesInTwo {
    Twin high, low;
};

// S. Gal and B. Bachelis, "An accurate elementary mathematical library for the IEEE floating point standard", 1991: with t
// the nearest row of a table and d = x − t, sin x = sin t + d cos t + small, cos x = cos t − d sin t + small. The first digits
// of d, sin t and cos t make exact products, so the two leading terms are summed exactly.
SinesInTwo sinesInTwo(Reduced const& x) noexcept {
    double const shifted = x.high * 128 + roundsToWhole;
    SineRow const& row = sines[(bitsOf(shifted) + 101) & 255];
    double const from = x.high - (shifted - roundsToWhole) * 0x1p-7;
    double const d1 = cut(from), d2 = (from - d1) + x.low, d = from + x.low, q = d * d;
    Twin const value{row.sine, row.cosine}, rest{row.sineRest, row.cosineRest};
    Twin const slope{row.cosine, -row.sine}, slopeRest{row.cosineRest, -row.sineRest};
    double const cosineLessOne = q * (-1.0 / 2 + q * (1.0 / 24 + q * (-1.0 / 720)));
    double const sineLessArgument = q * d * (-1.0 / 6 + q * (1.0 / 120 + q * (-1.0 / 5040)));
    Twin const step = slope * d1, high = value + step;
    Twin const small = (value + rest) * cosineLessOne + (slope + slopeRest) * sineLessArgument;
    return {high, (step - (high - value)) + ((rest + (slope * d2 + slopeRest * d)) + small)};
}

// After so many right angles more, the sine and the cosine have changed places and signs.
struct Turn {
    TwinBits changed, signs;
};
constexpr std::int64_t every = -1, minus = std::numeric_limits<std::int64_t>::min();
constexpr Turn turns[4] = {
    {{0, 0}, {0, 0}}, {{every, every}, {0, minus}}, {{0, 0}, {minus, minus}}, {{every, every}, {minus, 0}}};

Twin changed(Twin const& sines, Turn const& turn) noexcept {
    TwinBits const same = bit_cast<TwinBits>(sines), other = {same[1], same[0]};
    return bit_cast<Twin>(same ^ ((same ^ other) & turn.changed));
}

// Whether the angle is so small that its sine is itself, or not finite.
bool exceptional(double x) noexcept { return !(std::fabs(x) >= 0x1p-27 && std::fabs(x) < infinity); }

// P. T. P. Tang, "Table-lookup algorithms for elementary functions and their error analysis", 1991: with t a number of the
// table near y / x, the arc tangent of y / x is that of t and that of z = (y − t x) / (x + t y), which is small. The first
// digits of z are cut so that their product with the divisor is exact, and the remainder gives the others. Here 0 < y ≤ x,
// and group chooses what the table adds to or takes from: 0, π / 2, π / 2 and π.
double directionFromTable(double y, double x, uint64_t group) noexcept {
    double const shifted = y / x * 64 + roundsToWhole;
    DirectionRow const& row = directions[group * 65 + (bitsOf(shifted) & 127)];
    double const t = (shifted - roundsToWhole) * 0x1p-6;
    double const x1 = cut(x), x2 = x - x1;
    double const numerator = (y - t * x1) - t * x2;  // so much cancels that it is exact
    Pair const divisor = sum(x, t * y);
    double const inverse = 1 / divisor.high;
    double const z1 = cut(numerator * inverse), v1 = cut(divisor.high), v2 = divisor.high - v1;
    double const remainder = ((numerator - z1 * v1) - z1 * v2) - z1 * divisor.low;
    double const z2 = remainder * inverse, z = z1 + z2, q = z * z;
    double const series = z * q * (-1.0 / 3 + q * (1.0 / 5 + q * (-1.0 / 7 + q * (1.0 / 9))));
    double const added = signs[group & 1];
    Pair const s = sum(row.angle, added * z1);
    return s.high + (s.low + (row.rest + added * (z2 + series)));
}

// Where a part is zero, infinite or not a number, or the parts differ much or are far from 1.
[[gnu::noinline]] double arcOfExtremes(double y, double x) noexcept {
    if (std::isnan(x) || std::isnan(y)) return x + y;
    bool const left = signOf(x) != 0;
    if (y == 0) return left ? std::copysign(straightAngle[0], y) : y;
    if (x == 0) return std::copysign(rightAngle[0], y);
    if (std::isinf(x) && std::isinf(y)) return std::copysign(left ? threeQuarters[0] : rightAngle[0] / 2, y);

    double const a = std::fabs(y), b = std::fabs(x), most = greater(a, b);
    double const scale = most < 0x1p-400 ? 0x1p700 : most > 0x1p400 ? 0x1p-600 : 1;
    int const difference = exponentOf(y * scale) - exponentOf(x * scale);
    if (difference > 60) return std::copysign(rightAngle[0], y);
    if (difference < -60) return left ? std::copysign(straightAngle[0], y) : y / x;
    return arcTangent(y * scale, x * scale);
}

// The square root of the sum and a step of Newton's method, for which what the root's square lacks is computed exactly.
Pair hypotenuseInTwo(double x, double y) noexcept {
    double const h = std::sqrt(x * x + y * y);
    double const h1 = cut(h), h2 = h - h1, x1 = cut(x), x2 = x - x1, y1 = cut(y), y2 = y - y1;
    double const remainder =
        (((x1 * x1 - h1 * h1) + y1 * y1) + 2 * ((x1 * x2 - h1 * h2) + y1 * y2)) + ((x2 * x2 - h2 * h2) + y2 * y2);
    return {h, remainder / (2 * h)};
}

// Where a square would overflow or underflow. Here x ≥ y ≥ 0.
[[gnu::noinline]] double hypotenuseOfExtremes(double x, double y) noexcept {
    if (std::isinf(x) || std::isinf(y)) return infinity;
    if (std::isnan(x) || std::isnan(y) || x == 0) return x + y;
    if (x > 0x1p500) return hypotenuse(x * 0x1p-600, y * 0x1p-600) * 0x1p600;
    if (x > 0x1p-300) return x + y;
    Pair const h = hypotenuseInTwo(x * 0x1p700, y * 0x1p700);
    if (h.high > 0x1p-322) return (h.high + h.low) * 0x1p-700;
    // Less than the least normal number: rounded once, to the digits that such a number has.
    Pair const whole = sum(0x1p-322, h.high);
    return ((whole.high + (whole.low + h.low)) - 0x1p-322) * 0x1p-700;
}

}

SineCosine sineAndCosine(double radians) noexcept {
    if (exceptional(radians)) [[unlikely]] {
        if (std::fabs(radians) < 1) return {radians, 1};
        return {radians - radians, radians - radians};
    }
    Reduced const r = reduced(radians);
    SinesInTwo const both = sinesInTwo(r);
    Turn const& turn = turns[r.rightAngles & 3];
    TwinBits const result = bit_cast<TwinBits>(changed(both.high + both.low, turn)) ^ turn.signs;
    return bit_cast<SineCosine>(result);
}

double tangent(double radians) noexcept {
    if (exceptional(radians)) [[unlikely]]
        return std::fabs(radians) < 1 ? radians : radians - radians;
    Reduced const r = reduced(radians);
    SinesInTwo const both = sinesInTwo(r);
    Turn const& turn = turns[r.rightAngles & 3];
    Twin const high = both.high + both.low;
    Twin const first = changed(high, turn), rest = changed(both.low - (high - both.high), turn);
    double const inverse = 1 / first[1];
    double const q = cut(first[0] * inverse), d1 = cut(first[1]), d2 = first[1] - d1;
    double const remainder = ((first[0] - q * d1) - q * d2) + (rest[0] - q * rest[1]);
    return flipped(q + remainder * inverse, r.rightAngles << 63);
}

// As for two arguments, but the rows of the table are so near that nothing needs a rest: what is added to a row's angle
// is less than a sixtieth of it. The last row is so great that z = (x − t) / (1 + t x) is −1 / x.
double arcTangent(double x) noexcept {
    double const a = std::fabs(x);
    if (!(a >= 0x1p-27 && a < 0x1p60)) [[unlikely]] {
        if (std::isnan(x)) return x + x;
        return a < 1 ? x : std::copysign(rightAngle[0], x);
    }
    constexpr uint64_t step = (uint64_t{1} << 52) / arcsOfBinade, first = (uint64_t{1023} - 5) * arcsOfBinade;
    auto const near = static_cast<std::int64_t>((bitsOf(a) + step / 2) / step - first);
    ArcRow const& row = arcs[near < 0 ? 0 : near > std::int64_t{10 * arcsOfBinade} ? 10 * arcsOfBinade : near];
    double const z = (a - row.tangent) / (1 + a * row.tangent), q = z * z;
    double const series =
        z * q * ((-1.0 / 3 + q * (1.0 / 5)) + q * q * ((-1.0 / 7 + q * (1.0 / 9)) + q * q * (-1.0 / 11)));
    return std::copysign(row.angle + (row.rest + (z + series)), x);
}

double arcTangent(double y, double x) noexcept {
    double const a = std::fabs(y), b = std::fabs(x);
    auto const within = [](int number, int from, int to) {
        return static_cast<unsigned>(number - from) <= static_cast<unsigned>(to - from);
    };
    int const ofY = exponentOf(y), ofX = exponentOf(x);
    if (!(within(ofY, 523, 1523) && within(ofX, 523, 1523) && within(ofY - ofX, -60, 60))) [[unlikely]]
        return arcOfExtremes(y, x);
    uint64_t const left = signOf(x) >> 63;
    return std::copysign(directionFromTable(lesser(a, b), greater(a, b), a > b ? 1 + left : left * 3), y);
}

// A polynomial near the root, one step of Halley's method, then another one from the first 26 digits, whose third power
// leaves an exact remainder.
double cubeRoot(double x) noexcept {
    double const a = std::fabs(x);
    if (!(a >= 0x1p-1022 && a < infinity)) [[unlikely]] {
        if (!(a < 1) || a == 0) return x + x;
        return cubeRoot(x * 0x1p54) * 0x1p-18;
    }
    int const third = exponentOf(x) / 3, rest = exponentOf(x) % 3;
    double const mantissa = bit_cast<double>((bitsOf(x) & 0xfffffffffffff) | bitsOf(1.0));
    double const m = mantissa * static_cast<double>(1 << rest);
    double const* const p = cubeRootPolynomial;
    double const q = mantissa * mantissa;
    double const start = ((p[0] + mantissa * p[1]) + q * (p[2] + mantissa * p[3]) + q * q * p[4]) * cubeRoots[rest];
    double const cube = start * start * start;
    double const r = cut(start + start * (m - cube) / (2 * cube + m));
    double const square = r * r, first = cut(square);
    double const remainder = (m - first * r) - (square - first) * r;
    double const root = r + r * remainder / (2 * square * r + m);
    return std::copysign(root * power(third - 341), x);
}

double hypotenuse(double x, double y) noexcept {
    double const a = std::fabs(x), b = std::fabs(y);
    double const shorter = lesser(b, a), longer = greater(a, b);  // one of which is NaN where a or b is
    if (!(shorter >= 0x1p-400 && longer <= 0x1p500)) [[unlikely]]
        return hypotenuseOfExtremes(longer, shorter);
    Pair const h = hypotenuseInTwo(longer, shorter);
    return h.high + h.low;
}

}
