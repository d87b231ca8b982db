/// The runtime's formatter.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace ORN::os {

inline constexpr int formatTooLong = -1;
inline constexpr int formatFailed = -2;

/// Formats into a buffer of size units by the rules of FormatConversion.h; the format has nothing that is bad by them.
/// Returns the number of units, which may fill the buffer to its last unit (there is no terminator then),
/// formatTooLong when they do not fit, or formatFailed when no buffer would help. The argument list is used up.
/// Infinities, NaNs and the number of digits in an exponent look as the system's runtime writes them.
int formatWide(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept;

}
