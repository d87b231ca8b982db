#include "orn/colour/Colour.h"

#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <new>
#include <ostream>

namespace {

// Towards zero. What no int can hold becomes the lowest one, as the processor's own conversion has it.
int truncated(double x) noexcept { return x > -2147483649.0 && x < 2147483648.0 ? static_cast<int>(x) : INT_MIN; }

int rounded(double x) noexcept { return truncated(x >= 0 ? x + 0.5 : x - 0.5); }

// By comparisons that are false for NaN: a component that is no number is never the greatest or the least, unless it is red.
struct Range {
    double max, min;

    Range(double r, double g, double b) noexcept : max{r}, min{r} {
        if (g > max) max = g;
        if (b > max) max = b;
        if (g < min) min = g;
        if (b < min) min = b;
    }
};

// One of two, by masks: nobody can foresee which half of the lightness a colour lies in, and a branch guessed wrong costs
// more than both. The benchmark's row "RGB to HSV and HLS" falls without it.
double either(bool first, double a, double b) noexcept {
    auto const mask = -static_cast<std::uint64_t>(first);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) | (std::bit_cast<std::uint64_t>(b) & ~mask));
}

// In degrees, on the hexcone of A. R. Smith, "Color gamut transform pairs", 1978: each of its six sides takes 60 degrees,
// and the pair of components that are not the greatest tells how far into the side the colour lies.
double hueOf(double r, double g, double b, Range const& range) noexcept {
    double const d = range.max - range.min;
    if (r == range.max) return (g - b) * 60 / d;
    if (g == range.max) return (b - r) * 60 / d + 120;
    return (r - g) * 60 / d + 240;
}

// Makes the angle in its place. Copied there, its two halves would be stored one by one and loaded as a pair, which waits
// for the stores; the benchmark's row "RGB to HSV" falls then.
void setDegrees(Angle& angle, double degrees) noexcept { ::new (&angle) Angle(Angle::degrees(degrees)); }

void put(void* p, int red, int green, int blue) noexcept {
    auto* const bytes = static_cast<unsigned char*>(p);
    // A pixel of 24 bits in a bitmap has its blue byte first.
    bytes[0] = static_cast<unsigned char>(blue);
    bytes[1] = static_cast<unsigned char>(green);
    bytes[2] = static_cast<unsigned char>(red);
}

}

Colour Colour::argb(unsigned int word) {
    return {(word >> 16 & 0xFF) / 255.0, (word >> 8 & 0xFF) / 255.0, (word & 0xFF) / 255.0,
            (word >> 24 & 0xFF) / 255.0};
}

Colour Colour::colorref(COLORREF word) {
    return {(word & 0xFF) / 255.0, (word >> 8 & 0xFF) / 255.0, (word >> 16 & 0xFF) / 255.0, 1.0};
}

Colour Colour::dib24(void const* p) {
    auto const* const bytes = static_cast<unsigned char const*>(p);
    return {bytes[2] / 255.0, bytes[1] / 255.0, bytes[0] / 255.0, 1.0};
}

void Colour::getDib24(void* p) const {
    RGB const& c = rgb();
    put(p, rounded(c.red * 255), rounded(c.green * 255), rounded(c.blue * 255));
}

void Colour::getDib24(void* p, unsigned char const* const redTable, unsigned char const* const greenTable,
                      unsigned char const* const blueTable) const {
    RGB const& c = rgb();
    put(p, redTable[rounded(c.red * 255)], greenTable[rounded(c.green * 255)], blueTable[rounded(c.blue * 255)]);
}

void Colour::getDib24(void* p, unsigned char const* const table) const { getDib24(p, table, table, table); }

void Colour::getDib16(void* p) const {
    RGB const& c = rgb();
    auto const five = [](double x) { return static_cast<std::uint32_t>(rounded(x * 31)); };
    // Sums, not fields: a component beyond 1 carries into its neighbour, as the interface promises.
    auto const word = static_cast<std::uint16_t>((five(c.red) * 32 + five(c.green)) * 32 + five(c.blue));
    std::memcpy(p, &word, sizeof word);
}

COLORREF Colour::colorref() const {
    RGB const& c = rgb();
    auto const eight = [](double x) { return static_cast<std::uint32_t>(rounded(x * 255)); };
    return eight(c.blue) << 16 | eight(c.green) << 8 | eight(c.red);
}

// Both models keep the hue, so one is made from the other without going through RGB, where black and grey would lose it.
void Colour::calcHSV() const {
    if (hsv_.valid) return;
    if (hls_.valid) {
        // The value is the greatest component and 2l − value the least. Black and grey have no saturation.
        double const l = hls_.lightness, s = hls_.saturation;
        hsv_.hue = hls_.hue;
        if (s != 0 && l != 0) {
            hsv_.value = l <= 0.5 ? (s + 1) * l : l + s - l * s;
            hsv_.saturation = (hsv_.value - (2 * l - hsv_.value)) / hsv_.value;
        } else {
            hsv_.saturation = 0;
            hsv_.value = l;
        }
    } else {
        Range const range{rgb_.red, rgb_.green, rgb_.blue};
        hsv_.value = range.max;
        if (range.max != range.min) {
            hsv_.saturation = (range.max - range.min) / range.max;
            setDegrees(hsv_.hue, hueOf(rgb_.red, rgb_.green, rgb_.blue, range));
        } else {
            hsv_.saturation = 0;
            hsv_.hue = Angle{};
        }
    }
    hsv_.valid = true;
}

void Colour::calcHLS() const {
    if (hls_.valid) return;
    if (hsv_.valid) {
        double const s = hsv_.saturation, v = hsv_.value;
        hls_.hue = hsv_.hue;
        if (s != 0 && v != 0) {
            // v is the greatest component and m the least. In the lower half of the lightness they differ by at most
            // m + v, in the upper half by at most 2 − v − m. The saturation is their difference as a part of that.
            double const m = (1 - s) * v;
            hls_.lightness = (m + v) * 0.5;
            hls_.saturation = (v - m) / either(hls_.lightness > 0.5, 2 - v - m, m + v);
        } else {
            hls_.saturation = 0;
            hls_.lightness = v;
        }
    } else {
        Range const range{rgb_.red, rgb_.green, rgb_.blue};
        hls_.lightness = (range.max + range.min) * 0.5;
        if (range.max != range.min) {
            double const sum = range.max + range.min, rest = 2 - range.max - range.min;
            hls_.saturation = (range.max - range.min) / either(hls_.lightness <= 0.5, sum, rest);
            setDegrees(hls_.hue, hueOf(rgb_.red, rgb_.green, rgb_.blue, range));
        } else {
            hls_.saturation = 0;
            hls_.hue = Angle{};
        }
    }
    hls_.valid = true;
}

void Colour::calcRGB() const {
    if (rgb_.valid) return;
    // HLS is preferred where both are known. hi and lo are the greatest and the least component.
    bool const fromHLS = hls_.valid;
    double hi, lo;
    bool grey;
    if (fromHLS) {
        double const l = hls_.lightness, s = hls_.saturation;
        grey = s == 0 || l == 0;
        hi = grey ? l : l <= 0.5 ? (s + 1) * l : l + s - l * s;
        lo = 2 * l - hi;
    } else {
        double const s = hsv_.saturation, v = hsv_.value;
        grey = s == 0 || v == 0;
        hi = v;
        lo = (1 - s) * v;
    }

    if (grey) {
        rgb_ = {true, hi, hi, hi};
        return;
    }
    // The side of the hexcone, from 0 to 5, and how far into it the hue lies. The 6 keeps the remainder positive.
    double const x = (fromHLS ? hls_.hue : hsv_.hue).degrees() / 60 + 6.0;
    int const i = truncated(x);
    double const f = x - i;
    double const up = (hi - lo) * f + lo, down = (hi - lo) * (1 - f) + lo;
    rgb_.valid = true;
    switch (i % 6) {
        case 0: rgb_ = {true, hi, up, lo}; break;
        case 1: rgb_ = {true, down, hi, lo}; break;
        case 2: rgb_ = {true, lo, hi, up}; break;
        case 3: rgb_ = {true, lo, down, hi}; break;
        case 4: rgb_ = {true, up, lo, hi}; break;
        case 5: rgb_ = {true, hi, lo, down}; break;
        default: break;  // the hue is not a number: the components stay as they are
    }
}

std::wostream& operator<<(std::wostream& os, Colour const& colour) {
    return os << L"Colour::rgba(" << colour.r() << L',' << colour.g() << L',' << colour.b() << L',' << colour.a()
              << L')';
}
