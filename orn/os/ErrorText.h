/// The system's error codes and their texts.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The calling thread's last error, in Windows codes on every system.
DWORD lastError() noexcept;
void setLastError(DWORD code) noexcept;

/// The text of a code, from a loaded module's table when one is named and from the system's otherwise; exactly as the
/// system gives it. False, with the text untouched, when there is none.
bool errorText(DWORD code, wchar_t const* module, std::wstring& text);

/// The system's text in the language that is the whole system's default, its own line ends and all.
bool systemErrorText(DWORD code, std::wstring& text);

}
