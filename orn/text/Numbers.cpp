#include "orn/text/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <system_error>

namespace {

constexpr bool isBlank(wchar_t unit) noexcept { return unit == L' ' || unit == L'\t'; }

/// The value of a digit; more than 9 for any other unit.
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
// The first 17 digits of the largest double.
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
    // 17 digits fit a signed number, which processors convert in one step.
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

/// The order of these factors decides the last bits of the result, so it must not change.
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

/// The kept digits as a fraction of 10^exponent; false, with out untouched, beyond the largest double.
inline bool toDouble(double& out, std::uint64_t digits, std::ptrdiff_t kept, std::int64_t exponent,
                     bool negative) noexcept {
    // Without the zeros at their end the digits are more often few enough to be exact.
    for (; kept != 0 && digits % 10 == 0; --kept) digits /= 10;
    int const count = static_cast<int>(kept);

    if (exponent >= largestExponent) {
        if (exponent > largestExponent) return false;
        // Filled up to 17 digits, so that the two compare place by place.
        if (digits * integerPowers[mostDigits - count] > largestDigits) return false;
    }
    if (exponent < smallestExponent) {
        out = 0.0;
        return true;
    }
    double value = mantissaOf(digits, count);
    value = scaled(negative ? -value : value, static_cast<int>(exponent) - count);

    // Near the top the roundings of the scaling can step over the end.
    constexpr double largest = std::numeric_limits<double>::max();
    if (value > largest) value = largest;
    if (value < -largest) value = -largest;
    out = value;
    return true;
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
    // Takes all digits that follow. The first 17 of the number go into the sum, the others only into the count, which raises
    // the exponent.
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
            exponent = fraction - at;  // each zero between the point and the first digit lowers it
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

    return toDouble(*out, digits, kept, exponent, negative);
}

namespace ORN {

namespace {

/// Gathers the decimal digits and the exponent of a number of any length. Digits beyond those that can matter become
/// one digit more, so that a tie they break stays broken.
class DecimalReader {
public:
    explicit DecimalReader(std::wstring_view text) noexcept
        : begin_{text.data()}, at_{begin_}, end_{begin_ + text.size()}, negative_{skipToDigits(at_, end_)} {}

    DoubleRead read() noexcept {
        if (readWord(L"infinity") || readWord(L"inf")) return result(infinity);
        if (readWord(L"nan")) return result(std::numeric_limits<double>::quiet_NaN());
        wchar_t const* const first = at_;
        readDigits(false);
        bool seen = at_ != first;
        if (at_ != end_ && *at_ == L'.') {
            wchar_t const* const fraction = ++at_;
            readDigits(true);
            seen = seen || at_ != fraction;
        }
        if (!seen) return {};
        readExponent();
        return converted();
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    static constexpr std::ptrdiff_t mostSignificant = 770;  // a point between two doubles has at most 768

    bool readWord(std::wstring_view word) noexcept {
        if (static_cast<std::size_t>(end_ - at_) < word.size()) return false;
        for (std::size_t i = 0; i < word.size(); ++i)
            if (at_[i] != word[i] && at_[i] != word[i] - (L'a' - L'A')) return false;
        at_ += word.size();
        return true;
    }

    void readDigits(bool fraction) noexcept {
        for (std::uint32_t digit = 0; at_ != end_ && (digit = digitOf(*at_)) <= 9; ++at_) {
            bool const kept = count_ < mostSignificant && (count_ != 0 || digit != 0);
            if (kept) digits_[count_++] = static_cast<char>('0' + digit);
            if (count_ == mostSignificant && !kept) more_ = more_ || digit != 0;
            // The value is the digits times a power of ten: each digit kept behind the point lowers it, each one left
            // away before the point raises it.
            if (fraction && (kept || count_ == 0)) --exponent_;
            if (!fraction && !kept && count_ != 0) ++exponent_;
        }
    }

    void readExponent() noexcept {
        if (at_ == end_ || std::wstring_view{L"EeDd"}.find(*at_) == std::wstring_view::npos) return;
        wchar_t const* at = at_ + 1;
        bool const negative = skipToDigits(at, end_);
        if (at == end_ || digitOf(*at) > 9) return;  // the letter belongs to what follows
        // Far beyond every exponent that matters, and far from the end of the type.
        std::int64_t const large = std::int64_t{1} << 56;
        std::int64_t written = 0;
        for (; at != end_ && digitOf(*at) <= 9; ++at) written = std::min(written * 10 + digitOf(*at), large);
        exponent_ += negative ? -written : written;
        at_ = at;
    }

    DoubleRead converted() noexcept {
        if (count_ == 0) return result(0.0);
        std::int64_t const magnitude = exponent_ + count_;
        // Outside of these bounds there are no doubles, and the exponent has more digits than are written below.
        if (magnitude > 400) return result(infinity, DoubleRead::overflow);
        if (magnitude < -400) return result(0.0, DoubleRead::underflow);
        if (more_) {
            digits_[count_++] = '1';
            --exponent_;
        }
        // The standard library reads the digits as an integer, with an exponent of four digits behind them.
        char* end = digits_ + count_;
        *end++ = 'e';
        if (exponent_ < 0) *end++ = '-';
        auto const size = static_cast<int>(exponent_ < 0 ? -exponent_ : exponent_);
        for (int power = 1000; power != 0; power /= 10) *end++ = static_cast<char>('0' + size / power % 10);

        double value = 0;
        auto const [stop, error] = std::from_chars(digits_, end, value);
        if (error == std::errc{} && value != 0 && value <= std::numeric_limits<double>::max()) return result(value);
        return magnitude > 0 ? result(infinity, DoubleRead::overflow) : result(0.0, DoubleRead::underflow);
    }

    DoubleRead result(double value, DoubleRead::State state = DoubleRead::good) const noexcept {
        return {negative_ ? -value : value, static_cast<std::size_t>(at_ - begin_), state};
    }

    wchar_t const* begin_;
    wchar_t const* at_;
    wchar_t const* end_;
    bool negative_;
    bool more_ = false;  // some digit that was left away is not zero
    std::ptrdiff_t count_ = 0;
    std::int64_t exponent_ = 0;
    char digits_[mostSignificant + 8];
};

template <typename... Form>
std::string_view written(std::span<char> room, double value, Form... form) noexcept {
    auto const [end, error] = std::to_chars(room.data(), room.data() + room.size(), value, form...);
    if (error != std::errc{}) return {};
    return {room.data(), static_cast<std::size_t>(end - room.data())};
}

// The room for wide units has room for as many characters, which are widened in it from the last one on.
template <typename... Form>
std::wstring_view written(std::span<wchar_t> room, double value, Form... form) noexcept {
    auto* const characters = reinterpret_cast<char*>(room.data());
    std::size_t const length = written(std::span{characters, room.size()}, value, form...).size();
    for (std::size_t i = length; i-- != 0;) room[i] = static_cast<wchar_t>(characters[i]);
    return {room.data(), length};
}

}

DoubleRead readDouble(std::wstring_view text) noexcept { return DecimalReader{text}.read(); }

std::wstring_view writeDouble(std::span<wchar_t> room, double value) noexcept { return written(room, value); }
std::string_view writeDouble(std::span<char> room, double value) noexcept { return written(room, value); }

std::wstring_view writeDouble(std::span<wchar_t> room, double value, int digits) noexcept {
    return written(room, value, std::chars_format::fixed, std::max(digits, 0));
}
std::string_view writeDouble(std::span<char> room, double value, int digits) noexcept {
    return written(room, value, std::chars_format::fixed, std::max(digits, 0));
}

}
