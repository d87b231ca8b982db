/// Dynamic libraries, and the folders that they may be loaded from.
#pragma once

#include "orn/os/Types.h"

#include <string>

namespace ORN::os {

/// The folder of the system's own libraries. Empty when it cannot be read; on Windows also beyond 259 units.
std::wstring systemDirectory();

/// The file of the running program, likewise.
std::wstring programFile();

/// The one of the system's libraries that takes what error reports are to contain, which every process has loaded; null
/// where there are no such reports. Nothing is loaded, so that this may be called while libraries are.
HINSTANCE errorReportLibrary() noexcept;

/// Where what a library needs in turn is looked for on Windows: among the system's own libraries; or also beside the
/// library, beside the program and in folders that the program has added. The system's loader decides elsewhere, and on a
/// Windows too old for such rules.
enum class Needs { ofTheSystem, ofTheProgram };

/// Loads the library in exactly this file, which is named from the root on, and lets it stay. Null when that fails.
HINSTANCE loadLibrary(std::wstring const& file, Needs needs);

/// Null when the library, which may be null, has no such function.
void* libraryFunction(HINSTANCE library, char const* name) noexcept;

}
