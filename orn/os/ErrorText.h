/// The system's error codes and their texts.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The calling thread's last error: a code of Status.h, or another one of Windows.
/// @{
DWORD lastError() noexcept;
void setLastError(DWORD code) noexcept;
/// @}

/// Finds the text of a code, exactly as the system has it: in the table of a loaded module if one is named, otherwise in
/// the system's own. Returns false and leaves the text alone when there is none.
bool errorText(DWORD code, wchar_t const* module, std::wstring& text);

/// Finds the system's own text in the default language of the whole system. Its line ends stay as they are.
bool systemErrorText(DWORD code, std::wstring& text);

}
