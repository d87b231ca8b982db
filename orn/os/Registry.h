/// The system's registry: keys below a few roots, each with named values that have a type. Every call returns an error
/// code, 0 for success. Any thread may call.
///
/// Sizes are in bytes. Texts in values are UTF-16, little-endian, on every system. Backslashes divide the parts of a path.
/// Names are compared without case, unit by unit: by the simple upper case of a unit, where the unit is the lower case of
/// that again. A name keeps the case in which it was first given.
///
/// Off Windows the registry is a file that any number of processes share. ORN_REGISTRY names it. Otherwise it is
/// registry.db in the folder orn of the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config). Writing makes the
/// file and its folders. A file of no bytes is an empty registry.
///
/// - A call is done wholly or not at all, even if the process is killed during it. After a power failure the last calls
///   may be lost.
/// - A file that is no registry gives errorNotRegistryFile, and a damaged one errorBadDatabase. Neither is written to.
/// - A call waits for other processes for at most ten seconds, and then gives errorBusy. Threads of one process wait for
///   each other without a limit.
/// - A closed handle's number is never used again, so a stale handle gives errorInvalidHandle.
/// - The rights that choose one of Windows' two views mean nothing.
/// - A forked process may use its parent's handles as its own.
#pragma once

#include "orn/os/Status.h"

#include <string>
#include <vector>

namespace ORN::os {

inline constexpr DWORD registryRead = 0x20019, registryReadWrite = 0x2001F;
inline constexpr DWORD typeString = 1, typeExpandString = 2, typeBinary = 3, typeDword = 4, typeMultiString = 7,
                       typeQword = 11;

/// The roots' numbers. The handle of a root is its number, extended to 64 bits with its sign.
inline constexpr LONG rootClasses = -0x7FFFFFFF - 1, rootUser = rootClasses + 1, rootMachine = rootClasses + 2;

DWORD openKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept;
DWORD createKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept;  ///< opens it if it exists
DWORD closeKey(HKEY key) noexcept;

/// Reads a value of at most `size` bytes, and sets `size` to the value's size. A larger value gives errorMoreData.
DWORD queryValue(HKEY key, wchar_t const* name, DWORD& type, void* data, DWORD& size) noexcept;
DWORD setValue(HKEY key, wchar_t const* name, DWORD type, void const* data, DWORD size) noexcept;
DWORD deleteValue(HKEY key, wchar_t const* name) noexcept;
DWORD deleteTree(HKEY key, wchar_t const* subKey) noexcept;  ///< the sub-key and everything below it

/// Append the names of the keys or values directly below a key, in any order. After a failure some names may have been
/// appended. A name that another process makes or deletes meanwhile may be among them or not.
/// @{
DWORD listSubKeys(HKEY key, std::vector<std::wstring>& names) noexcept;
DWORD listValues(HKEY key, std::vector<std::wstring>& names) noexcept;  ///< the default value has an empty name
/// @}

}
