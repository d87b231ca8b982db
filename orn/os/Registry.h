/// The system's registry: keys below a few roots, each with named values that have a type. Elsewhere than on Windows it
/// is a file that any number of processes use; ORN_REGISTRY names it, otherwise it is registry.db in the folder orn of
/// the user's configuration folder ($XDG_CONFIG_HOME, else ~/.config). Writing makes the file and its folder, and a file
/// of no bytes is a registry with nothing in it yet.
///
/// Every call gives a Windows status, 0 for success, and may come from any thread. Sizes are in bytes; texts in values
/// are UTF-16, little-endian, on every system. The parts of a sub-key's path are divided by backslashes. Names compare
/// without case, unit by unit: in simple upper case, where that has the unit as its lower case again. They keep the case
/// in which they were first given.
///
/// Of the file: a call is done wholly or not at all, also when the process is killed in its midst; after a power failure
/// the last calls may not have been. Another's file gives 1017 and a damaged one 1009, and neither is written to. A call
/// that has waited for other processes for ten seconds gives 170; threads of one process wait for each other besides. A handle's number does not come again once it is
/// closed, so a stale one gives 6. What extra rights ask of Windows' two views means nothing. A process that was forked
/// has its parent's handles as its own.
#pragma once

#include "orn/os/Types.h"

#include <string>
#include <vector>

namespace ORN::os {

inline constexpr DWORD statusNotFound = 2, statusNoMemory = 8, statusInvalidParameter = 87, statusMoreData = 234;
inline constexpr DWORD registryRead = 0x20019, registryReadWrite = 0x2001F;
inline constexpr DWORD typeString = 1, typeExpandString = 2, typeBinary = 3, typeDword = 4, typeMultiString = 7,
                       typeQword = 11;

/// The roots' numbers; a root is the handle that has its number, extended by its sign.
inline constexpr LONG rootClasses = -0x7FFFFFFF - 1, rootUser = rootClasses + 1, rootMachine = rootClasses + 2;

DWORD openKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept;
DWORD createKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept;  ///< opens an existing one
DWORD closeKey(HKEY key) noexcept;

/// Reads a value of at most `size` bytes; afterwards `size` is that of the value, which also goes with statusMoreData.
DWORD queryValue(HKEY key, wchar_t const* name, DWORD& type, void* data, DWORD& size) noexcept;
DWORD setValue(HKEY key, wchar_t const* name, DWORD type, void const* data, DWORD size) noexcept;
DWORD deleteValue(HKEY key, wchar_t const* name) noexcept;
DWORD deleteTree(HKEY key, wchar_t const* subKey) noexcept;  ///< the sub-key and everything below it

/// Appends the names of what lies directly below a key, in no order of meaning. After a failure some may be there. What
/// others make or delete meanwhile may be among them or not.
/// @{
DWORD listSubKeys(HKEY key, std::vector<std::wstring>& names) noexcept;
DWORD listValues(HKEY key, std::vector<std::wstring>& names) noexcept;  ///< that of the default value is empty
/// @}

}
