/// printf-style formatting into strings, by the rules of the Windows runtime on every system: in a wide format `%s` and
/// `%c` take wide arguments and `%S`, `%hs`, `%hc` narrow ones, `%ls`, `%lc`, `%ws` wide ones. On integers the prefix
/// `l` means 32 bits (what is 64 bits long, as a Linux long is, needs `ll`); `ll`, `I64` and `j` mean 64, `I32` 32, `h`
/// 16, `hh` 8 (16 where the runtime does not know it), and `I`, `z`, `t` the size of a pointer. `%p` is sixteen
/// hexadecimal digits. On doubles, `l` and `L` change nothing. Infinities, NaNs, ties and the digits of an exponent
/// look as the system's runtime writes them. The decimal point is that of the calling thread's locale, a comma in many
/// of them: what is to be read back by a program is written by ORN::writeDouble. Narrow arguments beyond ASCII are read
/// as it reads them in the thread's locale on Windows, as getWCS does elsewhere.
///
/// A bad format is returned as it stands, and no argument is looked at: one with an unknown conversion, with `%n`, or
/// cut off inside a conversion.
#pragma once

#include "orn/Export.h"

#include <cstdarg>
#include <string>
#include <type_traits>

/// The text, of any length. The argument list stays the caller's to end.
/// @{
ORN_API std::wstring stringPrintf(wchar_t const* format, ...);
ORN_API std::wstring vStringPrintf(wchar_t const* format, std::va_list arguments);
/// @}

/// The narrow forms format through the wide ones, by the multibyte code page: their `%s` takes a wide argument, too.
/// @{
ORN_API std::string stringPrintf(char const* format, ...);
ORN_API std::string vStringPrintf(char const* format, std::va_list arguments);
/// @}

/// A class, such as a std::wstring, is no argument: hand in what c_str() gives.
/// @{
template <typename... Arguments>
requires(... || std::is_class_v<std::remove_cvref_t<Arguments>>) std::wstring
    stringPrintf(wchar_t const* format, Arguments const&... arguments)
= delete;
template <typename... Arguments>
requires(... || std::is_class_v<std::remove_cvref_t<Arguments>>) std::string
    stringPrintf(char const* format, Arguments const&... arguments)
= delete;
/// @}
