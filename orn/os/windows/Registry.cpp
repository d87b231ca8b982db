#include "orn/os/Registry.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <shlwapi.h>

#include <climits>
#include <new>

namespace ORN::os {

namespace {

DWORD status(LSTATUS given) noexcept { return static_cast<DWORD>(given); }

/// Takes one name after the other from tell(index, buffer, size), up to the last.
template <typename Tell>
DWORD list(std::vector<std::wstring>& names, Tell tell) noexcept {
    try {
        std::wstring name(0x4000, L'\0');  // as long as the names of values can be; those of keys are shorter
        for (DWORD index = 0;; ++index) {
            // In units, the size goes in as the room with the terminator, and comes out as the length without it.
            auto size = static_cast<DWORD>(name.size());
            LSTATUS const told = tell(index, name.data(), size);
            if (told == ERROR_NO_MORE_ITEMS) return 0;
            if (told != ERROR_SUCCESS) return status(told);
            names.emplace_back(name, 0, size);
        }
    } catch (std::bad_alloc const&) {
        return errorNotEnoughMemory;
    }
}

}

DWORD openKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegOpenKeyExW")) return ERROR_ACCESS_DENIED;
    return status(::RegOpenKeyExW(parent, subKey, 0, rights, &key));
}

DWORD createKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegCreateKeyExW")) return ERROR_ACCESS_DENIED;
    // The parameter is no pointer to const, but the system only reads the text.
    wchar_t noClass[] = L"";
    return status(
        ::RegCreateKeyExW(parent, subKey, 0, noClass, REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr));
}

DWORD closeKey(HKEY key) noexcept {
    // An empty path opens a root as itself. Closed, it would come to be another user's in a thread that impersonates one.
    LONGLONG const number = static_cast<LONGLONG>(reinterpret_cast<LONG_PTR>(key));
    if (number >= LONG_MIN && number <= LONG_MIN + 0xFF) return 0;
    return status(::RegCloseKey(key));
}

DWORD queryValue(HKEY key, wchar_t const* name, DWORD& type, void* data, DWORD& size) noexcept {
    if (ORN_OS_REFUSED("RegQueryValueExW")) return ERROR_ACCESS_DENIED;
    // The data comes as it was stored: the system makes sure of no terminator behind a text.
    return status(::RegQueryValueExW(key, name, nullptr, &type, static_cast<BYTE*>(data), &size));
}

DWORD setValue(HKEY key, wchar_t const* name, DWORD type, void const* data, DWORD size) noexcept {
    if (ORN_OS_REFUSED("RegSetValueExW")) return ERROR_ACCESS_DENIED;
    return status(::RegSetValueExW(key, name, 0, type, static_cast<BYTE const*>(data), size));
}

DWORD deleteValue(HKEY key, wchar_t const* name) noexcept {
    if (ORN_OS_REFUSED("RegDeleteValueW")) return ERROR_ACCESS_DENIED;
    return status(::RegDeleteValueW(key, name));
}

DWORD deleteTree(HKEY key, wchar_t const* subKey) noexcept {
    if (ORN_OS_REFUSED("SHDeleteKeyW")) return ERROR_ACCESS_DENIED;
    // RegDeleteKeyW would refuse a key that has keys below it.
    return status(::SHDeleteKeyW(key, subKey));
}

DWORD listSubKeys(HKEY key, std::vector<std::wstring>& names) noexcept {
    if (ORN_OS_REFUSED("RegEnumKeyExW")) return ERROR_ACCESS_DENIED;
    return list(names, [key](DWORD index, wchar_t* name, DWORD& size) {
        return ::RegEnumKeyExW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    });
}

DWORD listValues(HKEY key, std::vector<std::wstring>& names) noexcept {
    if (ORN_OS_REFUSED("RegEnumValueW")) return ERROR_ACCESS_DENIED;
    return list(names, [key](DWORD index, wchar_t* name, DWORD& size) {
        return ::RegEnumValueW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    });
}

}
