#include "orn/text/Numbers.h"

#include <cstdint>
#include <limits>

namespace {

constexpr bool isBlank(wchar_t unit) noexcept { return unit == L' ' || unit == L'\t'; }

/// The digit's value, or more than 9.
constexpr std::uint32_t digitOf(wchar_t unit) noexcept {
    return static_cast<std::uint32_t>(unit) - static_cast<std::uint32_t>(L'0');
}

/// Steps over blanks and a sign; true for a minus.
constexpr bool skipToDigits(wchar_t const*& at, wchar_t const* end) noexcept {
    while (at != end && isBlank(*at)) ++at;
    if (at == end || (*at != L'-' && *at != L'+')) return false;
    return *at++ == L'-';
}

constexpr int mostDigits = 17;

// The decimal exponent of d·10^e with 0.1 ≤ d < 1.
constexpr int largestExponent = 309;
constexpr int smallestExponent = -308;
constexpr std::uint64_t largestDigits = 17976931348623157;

constexpr double powers[16] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr double highPowers[5] = {1e16, 1e32, 1e64, 1e128, 1e256};

constexpr std::uint64_t integerPowers[mostDigits + 1] = {1,
                                                         10,
                                                         100,
                                                         1000,
                                                         10000,
                                                         100000,
                                                         1000000,
                                                         10000000,
                                                         100000000,
                                                         1000000000,
                                                         10000000000,
                                                         100000000000,
                                                         1000000000000,
                                                         10000000000000,
                                                         100000000000000,
                                                         1000000000000000,
                                                         10000000000000000,
                                                         100000000000000000};

/// The digits as multiplying by 10 in doubles builds them; up to 15 digits every step of that is exact.
inline double mantissaOf(std::uint64_t digits, int count) noexcept {
    if (count <= 15) return static_cast<double>(static_cast<std::int64_t>(digits));
    std::uint64_t const first = digits / integerPowers[count - 15];
    double result = static_cast<double>(static_cast<std::int64_t>(first));
    std::uint64_t rest = digits - first * integerPowers[count - 15];
    if (count == 17) {
        result = result * 10.0 + static_cast<double>(static_cast<std::int64_t>(rest / 10));
        rest %= 10;
    }
    return result * 10.0 + static_cast<double>(static_cast<std::int64_t>(rest));
}

inline double scaled(double value, int power) noexcept {
    if (power >= 0) {
        value *= powers[power & 15];
        for (int bit = 0, high = power >> 4; high != 0; ++bit, high >>= 1)
            if ((high & 1) != 0) value *= highPowers[bit];
    } else {
        value /= powers[-power & 15];
        for (int bit = 0, high = -power >> 4; high != 0; ++bit, high >>= 1)
            if ((high & 1) != 0) value /= highPowers[bit];
    }
    return value;
}

}

bool isLong(LONG* out, wchar_t const* text, std::size_t length) noexcept {
    wchar_t const* at = text;
    wchar_t const* const end = text + length;
    bool const negative = skipToDigits(at, end);
    if (at == end) return false;

    // Gathered below zero, where there is room for one value more.
    std::int32_t value = 0;
    for (; at != end; ++at) {
        std::uint32_t const digit = digitOf(*at);
        if (digit > 9) return false;
        if (value < -214748364 || (value == -214748364 && digit > 8)) return false;
        value = value * 10 - static_cast<std::int32_t>(digit);
    }
    if (!negative) {
        if (value == std::numeric_limits<std::int32_t>::min()) return false;
        value = -value;
    }
    *out = value;
    return true;
}

bool isDouble(double* out, wchar_t const* text, std::size_t length) noexcept {
    wchar_t const* at = text;
    wchar_t const* const end = text + length;
    bool const negative = skipToDigits(at, end);

    wchar_t const* const firstDigit = at;
    while (at != end && *at == L'0') ++at;
    bool seen = at != firstDigit;

    std::uint64_t digits = 0;
    std::ptrdiff_t kept = 0;
    std::uint32_t digit = 0;
    auto const keep = [&] {
        wchar_t const* const begin = at;
        wchar_t const* const stop = end - at > mostDigits - kept ? at + (mostDigits - kept) : end;
        for (; at != stop && (digit = digitOf(*at)) <= 9; ++at) digits = digits * 10 + digit;
        kept += at - begin;
        while (at != end && digitOf(*at) <= 9) ++at;
        return at - begin;
    };

    std::int64_t exponent = keep();
    seen = seen || kept != 0;
    if (at != end && *at == L'.') {
        wchar_t const* const fraction = ++at;
        if (kept == 0) {
            while (at != end && *at == L'0') ++at;
            exponent = fraction - at;
        }
        keep();
        seen = seen || at != fraction;
    }
    if (!seen) return false;

    if (at != end) {
        if (*at != L'E' && *at != L'e' && *at != L'D' && *at != L'd') return false;
        ++at;
        LONG written;
        if (!isLong(&written, at, static_cast<std::size_t>(end - at))) return false;
        exponent += written;
    }

    for (; kept != 0 && digits % 10 == 0; --kept) digits /= 10;
    int const count = static_cast<int>(kept);

    if (exponent >= largestExponent) {
        if (exponent > largestExponent) return false;
        if (digits * integerPowers[mostDigits - count] > largestDigits) return false;
    }
    if (exponent < smallestExponent) {
        *out = 0.0;
        return true;
    }
    double value = mantissaOf(digits, count);
    value = scaled(negative ? -value : value, static_cast<int>(exponent) - count);

    // Near the top the roundings of the scaling can step over the end.
    constexpr double largest = std::numeric_limits<double>::max();
    if (value > largest) value = largest;
    if (value < -largest) value = -largest;
    *out = value;
    return true;
}
