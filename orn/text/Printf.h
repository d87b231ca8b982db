/// printf-style formatting into strings, by the rules of the Windows runtime on every system: in a wide format %s and %c
/// take wide arguments and %hs, %hc narrow ones; the size prefix l means 32 bits.
#pragma once

#include "orn/Export.h"

#include <cstdarg>
#include <string>

/// A bad format (an unknown conversion, or one that is cut off) is returned as it stands.
ORN_API std::wstring stringPrintf(wchar_t const* format, ...);
ORN_API std::wstring vStringPrintf(wchar_t const* format, std::va_list arguments);

/// The narrow forms format through the wide ones, by the multibyte code page: their %s takes a wide argument, too.
ORN_API std::string stringPrintf(char const* format, ...);
ORN_API std::string vStringPrintf(char const* format, std::va_list arguments);
