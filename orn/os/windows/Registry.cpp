#include "orn/os/Registry.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <shlwapi.h>

namespace ORN::os {

namespace {

DWORD status(LSTATUS given) noexcept { return static_cast<DWORD>(given); }

}

DWORD openKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegOpenKeyExW")) return ERROR_ACCESS_DENIED;
    return status(::RegOpenKeyExW(parent, subKey, 0, rights, &key));
}

DWORD createKey(HKEY parent, wchar_t const* subKey, DWORD rights, HKEY& key) noexcept {
    if (ORN_OS_REFUSED("RegCreateKeyExW")) return ERROR_ACCESS_DENIED;
    wchar_t noClass[] = L"";
    return status(
        ::RegCreateKeyExW(parent, subKey, 0, noClass, REG_OPTION_NON_VOLATILE, rights, nullptr, &key, nullptr));
}

DWORD closeKey(HKEY key) noexcept { return status(::RegCloseKey(key)); }

DWORD queryValue(HKEY key, wchar_t const* name, DWORD& type, void* data, DWORD& size) noexcept {
    if (ORN_OS_REFUSED("RegQueryValueExW")) return ERROR_ACCESS_DENIED;
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
    return status(::SHDeleteKeyW(key, subKey));
}

}
