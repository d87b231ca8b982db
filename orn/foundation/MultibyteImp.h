/// The system's multibyte code page, for rooms that stand below the text functions: what getMBS and getWCS do.
#pragma once

#include "orn/foundation/Error.h"

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

/// The text in the code page. Empty when the conversion fails as a whole.
std::string toMultibyte(std::wstring_view text);

/// The text that bytes of the code page mean. Empty when the conversion fails as a whole.
std::wstring fromMultibyte(std::string_view text);

}
