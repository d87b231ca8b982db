#include "orn/os/Path.h"

#include "orn/os/Fault.h"

#include <cstdlib>
#include <iterator>

#include <windows.h>

namespace ORN::os {

wchar_t pathSeparator() noexcept { return L'\\'; }

std::wstring fullPath(std::wstring const& name) {
    wchar_t buffer[261];
    if (ORN_OS_REFUSED("_wfullpath") || name.find(L'\0') != std::wstring::npos) return {};
    // The runtime fails when the path does not fit with its terminator. An empty name gives it the current folder.
    return ::_wfullpath(buffer, name.c_str(), std::size(buffer)) != nullptr ? buffer : L"";
}

std::wstring longPath(std::wstring const& name) {
    if (name.find(L'\0') != std::wstring::npos) return {};
    std::wstring buffer(MAX_PATH, L'\0');
    // Another program may rename a part of the path between two calls, so each answer is compared with the room anew. A
    // name that does not exist has the length 0.
    for (;;) {
        // When the buffer is too small, the result is the size that it needs, terminator included.
        DWORD const length = ::GetLongPathNameW(name.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()));
        bool const fits = length < buffer.size();
        buffer.resize(length);
        if (fits) return buffer;
    }
}

}
