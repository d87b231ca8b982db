#include "orn/os/Download.h"

#include "orn/os/Fault.h"

#include <iterator>

#include <windows.h>

#include <objbase.h>
#include <urlmon.h>

namespace ORN::os {

namespace {

/// A thread without COM has it for the call; one that has it keeps what it has.
class Apartment {
public:
    Apartment() noexcept : entered_{::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)} {}
    ~Apartment() {
        // A thread of the multithreaded apartment has made the call fail, so there is nothing to undo.
        if (SUCCEEDED(entered_)) ::CoUninitialize();
    }
    Apartment(Apartment const&) = delete;
    Apartment& operator=(Apartment const&) = delete;

private:
    HRESULT entered_;
};

}

HRESULT downloadToCache(wchar_t const* url, std::wstring& file) {
    if (ORN_OS_REFUSED("URLDownloadToCacheFile")) return E_FAIL;
    // What it starts goes on after a download, so it must not go when this library is unloaded.
    HMODULE staying;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"urlmon.dll", &staying);
    Apartment const apartment;
    wchar_t buffer[261] = {};
    HRESULT const status = ::URLDownloadToCacheFileW(nullptr, url, buffer, std::size(buffer), 0, nullptr);
    if (status >= 0) file = buffer;
    return status;
}

}
