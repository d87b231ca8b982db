#include "orn/os/Library.h"

#include "orn/os/Fault.h"

#include <iterator>

#include <windows.h>

namespace ORN::os {

std::wstring systemDirectory() {
    wchar_t buffer[260];
    if (ORN_OS_REFUSED("GetSystemDirectory")) return {};
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

wchar_t const* errorReportLibrary() noexcept { return L"Kernel32.dll"; }

HINSTANCE loadLibrary(std::wstring const& file) {
    return file.find(L'\0') == std::wstring::npos ? ::LoadLibraryW(file.c_str()) : nullptr;
}

void* libraryFunction(HINSTANCE library, char const* name) noexcept {
    return library != nullptr ? reinterpret_cast<void*>(::GetProcAddress(library, name)) : nullptr;
}

}
