/// Numbers read from text and written to it, the same in every locale; nothing here allocates.
///
/// isLong and isDouble take a whole text or refuse it, and leave *out alone when they return false. readDouble reads
/// the number at the head of a text, to the nearest double; what writeDouble writes it reads back as the same double.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <cstddef>
#include <span>
#include <string_view>

/// A decimal integer of the signed 32-bit range in exactly `length` units: blanks (space, tab), a sign, digits, and
/// nothing behind them.
/// @{
[[nodiscard]] ORN_API bool isLong(LONG* out, wchar_t const* text, std::size_t length) noexcept;
[[nodiscard]] inline bool isLong(LONG* out, std::wstring_view text) noexcept {
    return isLong(out, text.data(), text.size());
}
/// @}

/// A decimal number in exactly `length` units: blanks, a sign, digits with at most one full stop among or around them,
/// and an exponent, which is E, e, D or d and what isLong accepts (blanks and a sign included).
///
/// The first 17 significant digits count, further ones are ignored; the result lies within a few units in the last
/// place. A value of 1e309 or more (by its exponent, also with a zero before it) or above the largest finite double is
/// no number here, and no number reads as infinity. What is less than 1e-309 becomes +0.0, whatever its sign. For the
/// nearest double take ORN::readDouble.
/// @{
[[nodiscard]] ORN_API bool isDouble(double* out, wchar_t const* text, std::size_t length) noexcept;
[[nodiscard]] inline bool isDouble(double* out, std::wstring_view text) noexcept {
    return isDouble(out, text.data(), text.size());
}
/// @}

namespace ORN {

/// The number that readDouble found.
struct DoubleRead {
    /// How it fared.
    enum State {
        none,      ///< there is no number
        good,      ///< the nearest double, ties to even
        overflow,  ///< beyond the largest double by half a unit or more: the value is an infinity
        underflow  ///< not zero, and at most half of the smallest double: the value is a zero
    };

    double value = 0;        ///< with the text's sign, zeros and infinities included
    std::size_t length = 0;  ///< the units that the number takes, blanks before it included; 0 where there is none
    State state = none;      ///< what the value is

    explicit constexpr operator bool() const noexcept { return state == good; }  ///< neither absent nor out of range
};

/// Reads the number at the head of the text, as far as it goes: whatever isDouble accepts, with all its digits and an
/// exponent of any size, and in any case of letters "inf", "infinity" and "nan".
[[nodiscard]] ORN_API DoubleRead readDouble(std::wstring_view text) noexcept;

/// The units that writeDouble needs for any double's shortest text.
inline constexpr std::size_t doubleRoom = 24;

/// The shortest text that readDouble reads back as the same double, in the form of the two, "0.001" or "1e-10", that is
/// shorter; "nan" and "inf" with their signs for what is no number. Returns what was written at the head of the room,
/// without terminator; the empty text, with the room's content lost, when it has not enough.
/// @{
ORN_API std::wstring_view writeDouble(std::span<wchar_t> room, double value) noexcept;
ORN_API std::string_view writeDouble(std::span<char> room, double value) noexcept;
/// @}

/// The same with a fixed number of digits behind the point, correctly rounded, and never an exponent; a negative number
/// of digits counts as 0. Takes up to 311 units and the digits.
/// @{
ORN_API std::wstring_view writeDouble(std::span<wchar_t> room, double value, int digits) noexcept;
ORN_API std::string_view writeDouble(std::span<char> room, double value, int digits) noexcept;
/// @}

}
