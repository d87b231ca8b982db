/// Dynamic libraries, and the folders that they may be loaded from.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The folder of the system's own libraries. Empty when it cannot be read, and on Windows when it has more than 259 units.
std::wstring systemDirectory();

/// The file of the running program. Empty in the same cases.
std::wstring programFile();

/// The system's library that registers memory for error reports. Null where there are no such reports. Every process has
/// it loaded. This loads nothing, so it may be called while a library is being loaded.
HINSTANCE errorReportLibrary() noexcept;

/// Where Windows looks for the libraries that a library needs in turn: among the system's own, or also beside the library,
/// beside the program, and in folders that the program has added. Off Windows, and on a Windows that has no such rules, the
/// system's loader decides.
enum class Needs { ofTheSystem, ofTheProgram };

/// Loads the library in exactly this file, and keeps it loaded. `file` is an absolute path. Null when it fails.
HINSTANCE loadLibrary(std::wstring const& file, Needs needs);

/// The address of a function. Null when the library has no such function, or is null itself.
void* libraryFunction(HINSTANCE library, char const* name) noexcept;

}
