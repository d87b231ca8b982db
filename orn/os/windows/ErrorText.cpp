#include "orn/os/ErrorText.h"

#include <windows.h>

namespace ORN::os {

namespace {

bool format(DWORD flags, HMODULE module, DWORD code, DWORD language, std::wstring& text) {
    wchar_t* buffer = nullptr;
    DWORD const length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | flags, module, code, language,
                                        reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    if (length == 0) return false;

    struct Release {
        wchar_t* buffer;
        ~Release() { LocalFree(buffer); }
    } const release{buffer};
    text.assign(buffer, length);
    return true;
}

}

DWORD lastError() noexcept { return GetLastError(); }
void setLastError(DWORD code) noexcept { SetLastError(code); }

bool errorText(DWORD code, wchar_t const* module, std::wstring& text) {
    DWORD const lineWidthMask = 0xFF;  // drops the message's own soft line breaks
    DWORD const userDefaultLanguage = 0x0400;

    HMODULE const handle = module != nullptr ? GetModuleHandleW(module) : nullptr;
    DWORD const source = module != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : FORMAT_MESSAGE_FROM_SYSTEM;
    return format(FORMAT_MESSAGE_IGNORE_INSERTS | lineWidthMask | source, handle, code, userDefaultLanguage, text);
}

bool systemErrorText(DWORD code, std::wstring& text) {
    DWORD const systemDefaultLanguage = 0x0800;
    return format(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, systemDefaultLanguage, text);
}

}
