/// The system's rules for the texts of URLs. Each function returns the system's status: negative for a failure, such as
/// 0x80004003 for a result that does not fit.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The room for a result in units, with the zero at its end.
inline constexpr DWORD urlRoom = 2084;

HRESULT unescapeUrl(wchar_t const* url, std::wstring& result);
HRESULT canonicalizeUrl(wchar_t const* url, std::wstring& result);  ///< escapes unsafe characters, too

/// Adds a scheme by the beginning of the text. Returns 1, with the result unchanged, when there is none to add.
HRESULT applyUrlScheme(wchar_t const* url, std::wstring& result);

}
