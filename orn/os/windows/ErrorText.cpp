#include "orn/os/ErrorText.h"

#include <windows.h>

namespace ORN::os {

DWORD lastError() noexcept { return GetLastError(); }
void setLastError(DWORD code) noexcept { SetLastError(code); }

bool errorText(DWORD code, wchar_t const* module, std::wstring& text) {
    DWORD const lineWidthMask = 0xFF;  // drops the message's own soft line breaks
    DWORD const userDefaultLanguage = 0x0400;

    HMODULE const handle = module != nullptr ? GetModuleHandleW(module) : nullptr;
    DWORD const source = module != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : FORMAT_MESSAGE_FROM_SYSTEM;
    wchar_t* buffer = nullptr;
    DWORD const length =
        FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | lineWidthMask | source, handle,
                       code, userDefaultLanguage, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    if (length == 0) return false;

    struct Release {
        wchar_t* buffer;
        ~Release() { LocalFree(buffer); }
    } const release{buffer};
    text.assign(buffer, length);
    return true;
}

}
