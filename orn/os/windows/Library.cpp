#include "orn/os/Library.h"

#include "orn/os/Fault.h"

#include <algorithm>
#include <iterator>

#include <windows.h>

namespace ORN::os {

std::wstring systemDirectory() {
    wchar_t buffer[260];
    if (ORN_OS_REFUSED("GetSystemDirectory")) return {};
    // A folder that does not fit gives the room it needs, which is more than there is.
    UINT const length = ::GetSystemDirectoryW(buffer, std::size(buffer));
    return length < std::size(buffer) ? std::wstring(buffer, length) : std::wstring{};
}

std::wstring programFile() {
    wchar_t buffer[260];
    if (ORN_OS_REFUSED("GetModuleFileName")) return {};
    // A name that is cut short fills the buffer.
    DWORD const length = ::GetModuleFileNameW(nullptr, buffer, std::size(buffer));
    return length < std::size(buffer) ? std::wstring(buffer, length) : std::wstring{};
}

HINSTANCE errorReportLibrary() noexcept { return ::GetModuleHandleW(L"Kernel32.dll"); }

HINSTANCE loadLibrary(std::wstring const& file, Needs needs) {
    // The system would read the name only up to the zero, and load another file.
    if (file.find(L'\0') != std::wstring::npos) return nullptr;
    std::wstring path = file;
    std::replace(path.begin(), path.end(), L'/', L'\\');  // the flags are for paths of backslashes
    // A system that has no such function does not know the flags either.
    bool const knowsFlags = ::GetProcAddress(::GetModuleHandleW(L"Kernel32.dll"), "AddDllDirectory") != nullptr;
    DWORD const flags = needs == Needs::ofTheSystem
                            ? LOAD_LIBRARY_SEARCH_SYSTEM32
                            : LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
    return ::LoadLibraryExW(path.c_str(), nullptr, knowsFlags ? flags : 0);
}

void* libraryFunction(HINSTANCE library, char const* name) noexcept {
    return library != nullptr ? reinterpret_cast<void*>(::GetProcAddress(library, name)) : nullptr;
}

}
