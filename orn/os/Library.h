/// Dynamic libraries, and the folders that they may be loaded from.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The folder of the system's own libraries. Empty when it cannot be read; on Windows also beyond 259 units.
std::wstring systemDirectory();

/// The file of the running program, likewise.
std::wstring programFile();

/// The one of the system's libraries that takes what error reports are to contain; null where there are no such reports.
wchar_t const* errorReportLibrary() noexcept;

/// Loads the library in exactly this file, which is named from the root on, and lets it stay. Null when that fails.
HINSTANCE loadLibrary(std::wstring const& file);

/// Null when the library, which may be null, has no such function.
void* libraryFunction(HINSTANCE library, char const* name) noexcept;

}
