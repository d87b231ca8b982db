/// The process's environment variables.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// Empty when there is no such variable. Elsewhere than on Windows names and values are in the multibyte code page, and a
/// program that runs with another user's rights (set-uid) has no variables.
std::wstring environmentVariable(std::wstring const& name);

/// Replaces each %NAME% by the variable's value; a name that no variable has stays, with its signs. Returns the units that
/// the result takes with its terminator, 0 when it fails, and writes it when it takes no more than `size`.
DWORD expandEnvironment(wchar_t const* text, wchar_t* buffer, DWORD size) noexcept;

}
