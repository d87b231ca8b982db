/// The texts of URLs: characters, schemes and percent escapes.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace ORN::os::web {

constexpr bool isDigit(wchar_t c) noexcept { return c >= L'0' && c <= L'9'; }
constexpr bool isLetter(wchar_t c) noexcept { return (c | 0x20) >= L'a' && (c | 0x20) <= L'z'; }
constexpr wchar_t lower(wchar_t c) noexcept { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c | 0x20) : c; }

/// The value of a hexadecimal digit, or -1.
constexpr int hexValue(wchar_t c) noexcept {
    if (isDigit(c)) return c - L'0';
    return lower(c) >= L'a' && lower(c) <= L'f' ? lower(c) - L'a' + 10 : -1;
}

/// A byte as % and two digits.
template <typename Unit>
void appendEscape(std::basic_string<Unit>& text, unsigned int byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (char const unit : {'%', digits[byte >> 4], digits[byte & 15]}) text += static_cast<Unit>(unit);
}

inline bool startsWithoutCase(std::wstring_view text, std::wstring_view lowerCaseStart) {
    return text.size() >= lowerCaseStart.size() &&
           std::equal(lowerCaseStart.begin(), lowerCaseStart.end(), text.begin(),
                      [](wchar_t a, wchar_t b) { return a == lower(b); });
}

inline bool startsWithDrive(std::wstring_view text) { return text.size() > 1 && isLetter(text[0]) && text[1] == L':'; }

/// The scheme with its colon, or nothing. One character before a colon is a drive.
inline std::wstring_view schemeOf(std::wstring_view url) {
    auto const colon = std::find_if_not(url.begin(), url.end(), [](wchar_t c) {
        return isLetter(c) || isDigit(c) || c == L'+' || c == L'-' || c == L'.';
    });
    bool const found = colon != url.end() && *colon == L':' && colon - url.begin() > 1;
    return found ? url.substr(0, static_cast<std::size_t>(colon - url.begin()) + 1) : std::wstring_view{};
}

}
