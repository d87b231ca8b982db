// Integers and decimals: what is a number is told by the grammar and exact decimals; a double's bits are those of the
// stated order of operations, and lie within a few units in the last place of the C library's.
#include "orn/text/Numbers.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

using Text = std::wstring_view;

bool takeOne(Text& text, Text of) {
    if (text.empty() || of.find(text[0]) == Text::npos) return false;
    text.remove_prefix(1);
    return true;
}

std::string takeDigits(Text& text) {
    std::string digits;
    for (; !text.empty() && text[0] >= L'0' && text[0] <= L'9'; text.remove_prefix(1))
        digits += static_cast<char>(text[0]);
    return digits;
}

bool takeMinus(Text& text) {
    while (takeOne(text, L" \t")) {}
    return takeOne(text, L"-") || (takeOne(text, L"+"), false);
}

std::optional<std::int32_t> readLong(Text text) {
    bool const minus = takeMinus(text);
    std::string const digits = takeDigits(text);
    if (digits.empty() || !text.empty()) return std::nullopt;
    long double value = 0;
    for (char const digit : digits) value = value * 10 + (digit - '0');
    if (minus) value = -value;
    if (value < -2147483648.0L || value > 2147483647.0L) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

std::optional<double> readDouble(Text text) {
    bool const minus = takeMinus(text);
    std::string const integer = takeDigits(text);
    std::string const fraction = takeOne(text, L".") ? takeDigits(text) : std::string{};
    if (integer.empty() && fraction.empty()) return std::nullopt;
    std::int64_t exponent = 0;
    if (!text.empty()) {
        if (!takeOne(text, L"EeDd")) return std::nullopt;
        auto const written = readLong(text);
        if (!written) return std::nullopt;
        exponent = *written;
    }

    // Of the digits those from the first that is not zero count, 17 at most, as a fraction of 10^exponent.
    std::string digits = integer + fraction;
    exponent += static_cast<std::int64_t>(integer.size());
    std::size_t const zeros = std::min(digits.find_first_not_of('0'), digits.size());
    digits.erase(0, zeros);
    exponent -= static_cast<std::int64_t>(zeros);
    digits = digits.substr(0, 17);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (exponent > 309 || (exponent == 309 && digits > "17976931348623157")) return std::nullopt;
    if (exponent < -308) return 0.0;

    double value = 0;
    for (char const digit : digits) value = value * 10 + (digit - '0');
    if (minus) value = -value;
    int const power = static_cast<int>(exponent) - static_cast<int>(digits.size());
    unsigned int const size = static_cast<unsigned int>(std::abs(power));
    auto const scale = [&](double factor) { value = power < 0 ? value / factor : value * factor; };
    double const small[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    scale(small[size % 16]);
    double const large[] = {1e16, 1e32, 1e64, 1e128, 1e256};
    for (unsigned int bit = 0; bit != 5; ++bit)
        if (size >> (4 + bit) & 1) scale(large[bit]);
    return std::isinf(value) ? std::copysign(DBL_MAX, value) : value;
}

}

ORN_LAW(Numbers) {
    std::wstring const text = input.text();
    Exact<wchar_t> const block{text};

    LONG integer = 4711;
    auto const expectedInteger = readLong(text);
    same("is an integer", isLong(&integer, block.data(), block.size()), expectedInteger.has_value());
    same("the integer", integer, expectedInteger.value_or(4711));

    double number = 47.11;
    auto const expected = readDouble(text);
    same("is a number", isDouble(&number, block.data(), block.size()), expected.has_value());
    same("bits of the number", std::bit_cast<std::int64_t>(number),
         std::bit_cast<std::int64_t>(expected.value_or(47.11)));

    // What is read is written as a text that reads back; a number throughout is the nearest double to the C library.
    ORN::DoubleRead const read = ORN::readDouble({block.data(), block.size()});
    holds("no more than there is", read.length <= block.size());
    wchar_t room[ORN::doubleRoom];
    ORN::DoubleRead const again = ORN::readDouble(ORN::writeDouble(room, read.value));
    holds("there and back", std::isnan(read.value)
                                ? std::isnan(again.value)
                                : std::bit_cast<std::int64_t>(again.value) == std::bit_cast<std::int64_t>(read.value));
    if (!expected) return;

    same("all of it is read", read.length, block.size());
    std::string plain;
    for (wchar_t const unit : text)
        if (unit != L' ' && unit != L'\t') plain += unit == L'D' || unit == L'd' ? 'e' : static_cast<char>(unit);
    double const exact = std::strtod(plain.c_str(), nullptr);
    same("the nearest double", std::bit_cast<std::int64_t>(read.value), std::bit_cast<std::int64_t>(exact));
    if (*expected == 0) return;
    double const unit = std::max(DBL_EPSILON * std::fabs(exact), DBL_TRUE_MIN);
    holds("within a few units of the exact value",
          std::fabs(number - std::clamp(exact, -DBL_MAX, DBL_MAX)) <= 8 * std::min(unit, DBL_MAX / 16));
}
