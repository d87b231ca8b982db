/// The system's rules for the texts of URLs. Each function returns the system's status: negative for a failure, such as
/// 0x80004003 for a result that does not fit.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// What a result has room in, in units, the zero at its end included.
inline constexpr DWORD urlRoom = 2084;

HRESULT unescapeUrl(wchar_t const* url, std::wstring& result);
HRESULT canonicalizeUrl(wchar_t const* url, std::wstring& result);  ///< escapes unsafe characters, too

/// Guesses a scheme and a file name. 1, with the result untouched, when there is none to apply.
HRESULT applyUrlScheme(wchar_t const* url, std::wstring& result);

}
