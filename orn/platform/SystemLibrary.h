/// Loads dynamic libraries from two fixed folders. Nothing is searched for: a library in the working folder or on a search
/// path is not found, nor one that has been loaded from elsewhere.
///
/// A name may lead into a subfolder, but not out of the folder again: a name with a part of dots and blanks alone (which
/// the system may read as "..") is not loaded. Slashes of either kind divide the parts. Both functions return null when
/// they cannot load. Any thread may call. The library stays loaded until the caller frees it with the system's function.
///
/// A library may need others in turn. Windows looks for them among its own libraries and, for a library of the program,
/// beside the library, beside the program, and in folders that the program has added with AddDllDirectory. It does not look
/// in the working folder or on the path. (Windows 7 without its update of 2011 has no such rules and searches as always.)
/// On Linux the loader finds them by what the library and the environment say.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN {

/// Loads from the folder of the system's own libraries. Off Windows that is the folder of this process's C library, and the
/// handle is one for dlsym and dlclose.
[[nodiscard]] ORN_API HINSTANCE LoadSystemLibrary(wchar_t const* name);

/// Loads from the folder of the running program. On Windows this fails for a program whose name has 260 characters or more.
[[nodiscard]] ORN_API HINSTANCE LoadProgramLibrary(wchar_t const* name);

}
