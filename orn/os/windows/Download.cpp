#include "orn/os/Download.h"

#include "orn/os/Fault.h"

#include <iterator>

#include <windows.h>

#include <urlmon.h>

namespace ORN::os {

HRESULT downloadToCache(wchar_t const* url, std::wstring& file) {
    if (ORN_OS_REFUSED("URLDownloadToCacheFile")) return E_FAIL;
    // What it starts goes on after a download, so it must not go when this library is unloaded.
    HMODULE staying;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"urlmon.dll", &staying);
    wchar_t buffer[261] = {};
    HRESULT const status = ::URLDownloadToCacheFileW(nullptr, url, buffer, std::size(buffer), 0, nullptr);
    if (status >= 0) file = buffer;
    return status;
}

}
