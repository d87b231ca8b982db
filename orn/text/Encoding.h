/// Conversion of whole texts between UTF-16 code units (wide strings), UTF-8 and the system's multibyte code page.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

/// UTF-16 to UTF-8. Every wide string survives the way there and back: an unpaired surrogate becomes its own three-byte
/// sequence. No byte order mark is written.
/// @{
ORN_API std::string utf8(std::wstring const& text);
ORN_API std::string utf8(wchar_t const* text, std::size_t length);
template <std::same_as<std::wstring_view> View>
std::string utf8(View text) {
    return utf8(text.data(), text.size());
}
/// @}

/// UTF-8 to UTF-16, without validation: overlong forms and encoded surrogates are taken as they come, values above
/// U+10FFFF vanish. A last sequence that lacks two or more bytes gives one U+FFFD; one that lacks exactly its last byte
/// is read with a zero in its place.
/// @{
ORN_API std::wstring utf8(std::string const& text);
ORN_API std::wstring utf8(char const* text, std::size_t length);
template <std::same_as<std::string_view> View>
std::wstring utf8(View text) {
    return utf8(text.data(), text.size());
}
/// @}

/// Multibyte code page to UTF-16; bytes that the code page does not know become what the system puts in their place. A
/// conversion that fails as a whole gives the empty string. The code page is the ANSI code page on Windows, and elsewhere
/// the character set that LC_ALL, LC_CTYPE or LANG names at the first conversion of the process (UTF-8 for the "C"
/// locale); what setlocale or setenv change later does not count.
/// @{
ORN_API std::wstring getWCS(char const* text);
ORN_API std::wstring getWCS(char const* text, std::size_t length);  ///< exactly length bytes, zeros included
ORN_API std::wstring getWCS(std::string const& text);
template <std::same_as<std::string_view> View>
std::wstring getWCS(View text) {
    return getWCS(text.data(), text.size());
}
/// @}

/// UTF-16 to the multibyte code page; characters outside it become what the system puts in their place. A conversion
/// that fails as a whole gives the empty string.
/// @{
ORN_API std::string getMBS(wchar_t const* text);
ORN_API std::string getMBS(wchar_t const* text, std::size_t length);  ///< exactly length units, zeros included
ORN_API std::string getMBS(std::wstring const& text);
template <std::same_as<std::wstring_view> View>
std::string getMBS(View text) {
    return getMBS(text.data(), text.size());
}
/// @}

/// Converts into a buffer of size bytes, terminator included, and returns the number of bytes before the terminator. A
/// text that does not fit is cut to its longest prefix of whole code points that does, found in about log2(text.size())
/// conversions. A negative size counts as 0. Throws std::logic_error "illegal buffer to pack wstring" for size 0;
/// WinError when the conversion fails for another reason than lack of room, and also when the buffer has room for a
/// byte, but not for the text's first code point. The buffer then holds the empty text.
/// @{
ORN_API unsigned int packTo(std::wstring const& text, char* buffer, int size);
ORN_API unsigned int packTo(wchar_t const* text, std::size_t length, char* buffer, int size);
template <std::same_as<std::wstring_view> View>
unsigned int packTo(View text, char* buffer, int size) {
    return packTo(text.data(), text.size(), buffer, size);
}
/// @}
