/// The runtime's formatter.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace ORN::os {

inline constexpr int formatTooLong = -1;
inline constexpr int formatFailed = -2;

/// Formats into a buffer of `size` units. The format must be good by the rules of FormatConversion.h. Returns the
/// number of units, which may fill the buffer without a terminator. Returns formatTooLong when the text does not fit,
/// or formatFailed when no buffer would help. The argument list is used up. Infinities, NaNs and the number of digits
/// in an exponent are those of the system's runtime.
int formatWide(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept;

}
