/// Dynamic libraries, loaded from two fixed folders only. They are never searched for: what lies in the working folder or
/// on a search path is not found, and neither is what is loaded already from elsewhere.
///
/// A name may lead into a subfolder, but not out of the folder again: one with a part of dots and blanks alone (".." as the
/// system reads it), between slashes of either kind, is not loaded. Both functions return null when they cannot load, and
/// may be called from any thread; the library stays until the caller frees it by the system's means.
///
/// What a library needs in turn is found on Windows among the system's own libraries and, for one of the program's, beside
/// it, beside the program, and in folders that the program has added with AddDllDirectory; neither in the working folder
/// nor on the path. (Windows 7 without its update of 2011 has no such rules and searches as always.) Elsewhere the
/// system's loader finds it by what the library says and the environment adds.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN {

/// From the folder of the system's own libraries. Elsewhere than on Windows that is the folder that this process's C
/// library was loaded from, and the handle is one for dlsym and dlclose.
[[nodiscard]] ORN_API HINSTANCE LoadSystemLibrary(wchar_t const* name);

/// From the folder of the running program's file. On Windows, where names are cut at 260 characters, a longer one of the
/// program is no folder.
[[nodiscard]] ORN_API HINSTANCE LoadProgramLibrary(wchar_t const* name);

}
