/// Small services for wide strings: case, collation, trimming, bounded copies.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

/// By the calling thread's current locale (see AutoLocale), keeping the length. A text ends at an embedded zero.
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

/// A to Z become a to z and everything else stays, in every locale; embedded zeros are kept.
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

/// Compares up to the first zero by the calling thread's current locale: negative, zero or positive. Texts that cannot
/// be collated count as equal.
/// @{
ORN_API int collateStrings(std::wstring const& a, std::wstring const& b) noexcept;
ORN_API int collateStrings(wchar_t const* a, wchar_t const* b) noexcept;
template <std::same_as<std::wstring_view> View>
int collateStrings(View a, View b) {
    return collateStrings(std::wstring{a}, std::wstring{b});
}
/// @}

/// Without the spaces (isUspace) before the first and behind the last other code point.
/// @{
ORN_API std::wstring trimwhitespace(std::wstring const& text);
ORN_API std::wstring trimwhitespace(wchar_t const* text, std::size_t length);
template <std::same_as<std::wstring_view> View>
std::wstring trimwhitespace(View text) {
    return trimwhitespace(text.data(), text.size());
}
/// @}

/// Copies into a buffer of size units, terminator included, what fits, and returns the number of units before the
/// terminator. When the first unit that is cut off (at size - 1) is a leading surrogate, the one before it goes, too.
/// Throws std::logic_error "illegal buffer to pack wstring" for size 0.
/// @{
ORN_API std::size_t packTo(std::wstring const& text, wchar_t* buffer, std::size_t size);
ORN_API std::size_t packTo(wchar_t const* text, std::size_t length, wchar_t* buffer, std::size_t size);
template <std::same_as<std::wstring_view> View>
std::size_t packTo(View text, wchar_t* buffer, std::size_t size) {
    return packTo(text.data(), text.size(), buffer, size);
}
/// @}
