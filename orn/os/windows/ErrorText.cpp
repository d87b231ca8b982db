#include "orn/os/ErrorText.h"

#include "orn/os/Status.h"

#include <windows.h>

namespace ORN::os {

namespace {

// The names of Status.h have the system's values.
static_assert(errorSuccess == ERROR_SUCCESS);
static_assert(errorFileNotFound == ERROR_FILE_NOT_FOUND);
static_assert(errorPathNotFound == ERROR_PATH_NOT_FOUND);
static_assert(errorTooManyOpenFiles == ERROR_TOO_MANY_OPEN_FILES);
static_assert(errorAccessDenied == ERROR_ACCESS_DENIED);
static_assert(errorInvalidHandle == ERROR_INVALID_HANDLE);
static_assert(errorNotEnoughMemory == ERROR_NOT_ENOUGH_MEMORY);
static_assert(errorInvalidData == ERROR_INVALID_DATA);
static_assert(errorOutOfMemory == ERROR_OUTOFMEMORY);
static_assert(errorWriteFault == ERROR_WRITE_FAULT);
static_assert(errorGeneralFailure == ERROR_GEN_FAILURE);
static_assert(errorSharingViolation == ERROR_SHARING_VIOLATION);
static_assert(errorNotSupported == ERROR_NOT_SUPPORTED);
static_assert(errorInvalidParameter == ERROR_INVALID_PARAMETER);
static_assert(errorDiskFull == ERROR_DISK_FULL);
static_assert(errorInsufficientBuffer == ERROR_INSUFFICIENT_BUFFER);
static_assert(errorModuleNotFound == ERROR_MOD_NOT_FOUND);
static_assert(errorProcedureNotFound == ERROR_PROC_NOT_FOUND);
static_assert(errorBadPath == ERROR_BAD_PATHNAME);
static_assert(errorBusy == ERROR_BUSY);
static_assert(errorAlreadyExists == ERROR_ALREADY_EXISTS);
static_assert(errorMoreData == ERROR_MORE_DATA);
static_assert(errorNoMoreItems == ERROR_NO_MORE_ITEMS);
static_assert(errorInvalidFlags == ERROR_INVALID_FLAGS);
static_assert(errorBadDatabase == ERROR_BADDB);
static_assert(errorRegistryIo == ERROR_REGISTRY_IO_FAILED);
static_assert(errorNotRegistryFile == ERROR_NOT_REGISTRY_FILE);
static_assert(errorKeyDeleted == ERROR_KEY_DELETED);
static_assert(errorNoUnicodeTranslation == ERROR_NO_UNICODE_TRANSLATION);
static_assert(errorInvalidWindow == ERROR_INVALID_WINDOW_HANDLE);
static_assert(errorNotEnoughQuota == ERROR_NOT_ENOUGH_QUOTA);
static_assert(errorUuidInvalidText == RPC_S_INVALID_STRING_UUID);
static_assert(errorUuidNoAddress == RPC_S_UUID_NO_ADDRESS);
static_assert(errorUuidLocalOnly == RPC_S_UUID_LOCAL_ONLY);
static_assert(errorInvalidProfile == ERROR_INVALID_PROFILE);
static_assert(errorTagNotFound == ERROR_TAG_NOT_FOUND);
static_assert(errorInvalidColourSpace == ERROR_INVALID_COLORSPACE);
static_assert(errorInvalidTransform == ERROR_INVALID_TRANSFORM);
static_assert(waitObject == WAIT_OBJECT_0);
static_assert(waitTimedOut == WAIT_TIMEOUT);
static_assert(waitFailed == WAIT_FAILED);
static_assert(waitForever == INFINITE);

bool format(DWORD flags, HMODULE module, DWORD code, DWORD language, std::wstring& text) {
    wchar_t* buffer = nullptr;
    // With ALLOCATE_BUFFER the system takes the address of our pointer where it would take a buffer otherwise.
    DWORD const length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | flags, module, code, language,
                                        reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    if (length == 0) return false;

    // assign() may throw, so a destructor frees the buffer.
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

    // A module that is not loaded gives null. The system then looks into the table of the program itself.
    HMODULE const handle = module != nullptr ? GetModuleHandleW(module) : nullptr;
    DWORD const source = module != nullptr ? FORMAT_MESSAGE_FROM_HMODULE : FORMAT_MESSAGE_FROM_SYSTEM;
    return format(FORMAT_MESSAGE_IGNORE_INSERTS | lineWidthMask | source, handle, code, userDefaultLanguage, text);
}

bool systemErrorText(DWORD code, std::wstring& text) {
    DWORD const systemDefaultLanguage = 0x0800;
    // Inserts are not ignored: a text that has some cannot be formatted, and counts as missing.
    return format(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, systemDefaultLanguage, text);
}

}
