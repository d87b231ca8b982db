/// The system's multibyte code page, for rooms that stand below the text functions: what getMBS and getWCS do.
#pragma once

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/os/Scratch.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>

namespace ORN {

/// A length as the system's conversions take it. Throws as throwIntCast when it has more than 31 bits.
inline int conversionLength(std::size_t length) {
    if (length > INT_MAX) throwIntCast();
    return static_cast<int>(length);
}

/// The room of a scratch buffer, as far as the system's conversions can use it.
template <typename T, std::size_t N>
int conversionRoom(os::Scratch<T, N> const& scratch) noexcept {
    return static_cast<int>(std::min<std::size_t>(scratch.size(), INT_MAX));
}

/// The text in the code page. Empty when the conversion fails as a whole.
inline std::string toMultibyte(std::wstring_view text) {
    if (text.empty()) return {};
    int const units = conversionLength(text.size());
    os::Scratch<char, 128> scratch{text.size() * 5 + 1};
    int const bytes = os::wideToMultibyte(text.data(), units, scratch.data(), conversionRoom(scratch));
    return {scratch.data(), static_cast<std::size_t>(bytes)};
}

/// The text that bytes of the code page mean. Empty when the conversion fails as a whole.
inline std::wstring fromMultibyte(std::string_view text) {
    if (text.empty()) return {};
    int const bytes = conversionLength(text.size());
    os::Scratch<wchar_t, 64> scratch{text.size() + 1};
    int const units = os::multibyteToWide(text.data(), bytes, scratch.data(), conversionRoom(scratch));
    return {scratch.data(), static_cast<std::size_t>(units)};
}

}
