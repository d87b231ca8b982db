/// printf-style formatting into strings, by the rules of the Windows runtime on every system: in a wide format `%s` and
/// `%c` take wide arguments and `%S`, `%hs`, `%hc` narrow ones, `%ls`, `%lc`, `%ws` wide ones. On integers the prefix
/// `l` means 32 bits (what is 64 bits long, as a Linux long is, needs `ll`); `ll`, `I64` and `j` mean 64, `I32` 32, `h`
/// 16, `hh` 8 (16 where the runtime does not know it), and `I`, `z`, `t` the size of a pointer. `%p` is sixteen
/// hexadecimal digits. On doubles, `l` and `L` change nothing. Infinities, NaNs, ties and the digits of an exponent
/// look as the system's runtime writes them. The decimal point is that of the calling thread's locale, a comma in many
/// of them: ORN::writeDouble writes numbers that programs read back. Narrow arguments beyond ASCII are read in the
/// thread's locale on Windows, and as getWCS reads them elsewhere.
///
/// A bad format is the result as it stands, and no argument is read. A format is bad with an unknown conversion, with
/// `%n`, or cut off inside a conversion.
#pragma once

#include "orn/Export.h"

#include <cstdarg>
#include <string>
#include <type_traits>

/// Returns the text, of any length. The caller ends the argument list.
/// @{
ORN_API std::wstring stringPrintf(wchar_t const* format, ...);
ORN_API std::wstring vStringPrintf(wchar_t const* format, std::va_list arguments);
/// @}

/// The narrow forms format through the wide ones, by the multibyte code page: their `%s` takes a wide argument, too.
/// @{
ORN_API std::string stringPrintf(char const* format, ...);
ORN_API std::string vStringPrintf(char const* format, std::va_list arguments);
/// @}

/// An object of a class, such as a std::wstring, does not compile as an argument. Pass its c_str().
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
