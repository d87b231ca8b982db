/// Small services for wide strings: case, collation, trimming, bounded copies.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

/// The text in upper or lower case, by the calling thread's current locale (see AutoLocale). The length stays, but the
/// result ends at the first zero in the text.
/// @{
ORN_API std::wstring uppercase(std::wstring const& text);
ORN_API std::wstring lowercase(std::wstring const& text);
template <std::same_as<std::wstring_view> View>
std::wstring uppercase(View text) {
    return uppercase(std::wstring{text});
}
template <std::same_as<std::wstring_view> View>
std::wstring lowercase(View text) {
    return lowercase(std::wstring{text});
}
/// @}

/// Maps A to Z to a to z, in every locale. Everything else stays, zeros in the text as well.
/// @{
constexpr wchar_t simpleLowercase(wchar_t unit) noexcept {
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
}
ORN_API std::wstring simpleLowercase(std::wstring const& text);
template <std::same_as<std::wstring_view> View>
std::wstring simpleLowercase(View text) {
    return simpleLowercase(std::wstring{text});
}
/// @}

/// Compares two texts, each up to its first zero, by the calling thread's current locale. Returns a negative number, 0
/// or a positive one. Texts that the system cannot compare count as equal.
/// @{
ORN_API int collateStrings(std::wstring const& a, std::wstring const& b) noexcept;
ORN_API int collateStrings(wchar_t const* a, wchar_t const* b) noexcept;
template <std::same_as<std::wstring_view> View>
int collateStrings(View a, View b) {
    return collateStrings(std::wstring{a}, std::wstring{b});
}
/// @}

/// The text without the spaces (isUspace) at its beginning and at its end.
/// @{
ORN_API std::wstring trimwhitespace(std::wstring const& text);
ORN_API std::wstring trimwhitespace(wchar_t const* text, std::size_t length);
template <std::same_as<std::wstring_view> View>
std::wstring trimwhitespace(View text) {
    return trimwhitespace(text.data(), text.size());
}
/// @}

/// Copies as much of the text as fits into a buffer of size units, terminator included. Returns the number of units
/// before the terminator. When the first unit that does not fit (at size - 1) is a leading surrogate, the one before it
/// is left out, too. Throws std::logic_error "illegal buffer to pack wstring" for size 0.
/// @{
ORN_API std::size_t packTo(std::wstring const& text, wchar_t* buffer, std::size_t size);
ORN_API std::size_t packTo(wchar_t const* text, std::size_t length, wchar_t* buffer, std::size_t size);
template <std::same_as<std::wstring_view> View>
std::size_t packTo(View text, wchar_t* buffer, std::size_t size) {
    return packTo(text.data(), text.size(), buffer, size);
}
/// @}
