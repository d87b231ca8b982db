/// These functions read numbers from text and write them, the same in every locale. None allocates.
///
/// isLong and isDouble accept or refuse a whole text; when they return false, *out is unchanged. readDouble reads the
/// number at the head of a text, to the nearest double. It reads what writeDouble wrote as the same double.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <cstddef>
#include <span>
#include <string_view>

/// Reads a decimal integer of the signed 32-bit range from exactly `length` units. They are blanks (space, tab), a sign
/// and digits, with nothing behind them.
/// @{
[[nodiscard]] ORN_API bool isLong(LONG* out, wchar_t const* text, std::size_t length) noexcept;
[[nodiscard]] inline bool isLong(LONG* out, std::wstring_view text) noexcept {
    return isLong(out, text.data(), text.size());
}
/// @}

/// Reads a decimal number from exactly `length` units. They are blanks, a sign, digits with at most one full stop among
/// or around them, and an exponent: E, e, D or d, and a text that isLong accepts, with its blanks and sign.
///
/// Only the first 17 significant digits count, and the result lies within a few units in the last place. isDouble
/// refuses a value of 1e309 or more (by its exponent, even if the digits are zeros) and one above the largest finite
/// double, so it never gives infinity. A value below 1e-309 becomes +0.0, whatever its sign. ORN::readDouble gives the
/// nearest double.
/// @{
[[nodiscard]] ORN_API bool isDouble(double* out, wchar_t const* text, std::size_t length) noexcept;
[[nodiscard]] inline bool isDouble(double* out, std::wstring_view text) noexcept {
    return isDouble(out, text.data(), text.size());
}
/// @}

namespace ORN {

/// The number that readDouble found.
struct DoubleRead {
    /// What the value is.
    enum State {
        none,      ///< there is no number
        good,      ///< the nearest double, ties to even
        overflow,  ///< beyond the largest double by half a unit or more: the value is an infinity
        underflow  ///< not zero, and at most half of the smallest double: the value is a zero
    };

    double value = 0;        ///< with the text's sign, zeros and infinities included
    std::size_t length = 0;  ///< the units that the number takes, blanks before it included; 0 where there is none
    State state = none;      ///< whether there is a number, and whether a double can hold it

    explicit constexpr operator bool() const noexcept { return state == good; }  ///< true for good alone
};

/// Reads the number at the head of the text, as far as it goes. It reads every form that isDouble accepts, all digits
/// and an exponent of any size, and also "inf", "infinity" and "nan" in upper or lower case.
[[nodiscard]] ORN_API DoubleRead readDouble(std::wstring_view text) noexcept;

/// The units that writeDouble needs for any double's shortest text.
inline constexpr std::size_t doubleRoom = 24;

/// Writes the shortest text that readDouble reads back as the same double, as "0.001" or as "1e-10", whichever is
/// shorter. NaNs and infinities are "nan" and "inf" with their signs. Returns the text, which stands at the head of the
/// room without a terminator. When the room is too small, the result is empty, and the content of the room is lost.
/// @{
ORN_API std::wstring_view writeDouble(std::span<wchar_t> room, double value) noexcept;
ORN_API std::string_view writeDouble(std::span<char> room, double value) noexcept;
/// @}

/// Writes a fixed number of digits behind the point, correctly rounded, and never an exponent. A negative number of
/// digits counts as 0. A text needs up to 311 units more than it has digits behind the point.
/// @{
ORN_API std::wstring_view writeDouble(std::span<wchar_t> room, double value, int digits) noexcept;
ORN_API std::string_view writeDouble(std::span<char> room, double value, int digits) noexcept;
/// @}

}
