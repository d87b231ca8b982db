#include "orn/os/ErrorText.h"

#include "orn/os/Status.h"
#include "orn/os/posix/ServiceLibrary.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace ORN::os {

namespace {

// As on Windows each thread has its own.
constinit thread_local DWORD lastErrorCode = 0;

struct Text {
    DWORD code;
    wchar_t const* text;
};

// The codes that calls of the seam can give, in ascending order. The texts are those of Windows in English.
constexpr Text texts[] = {
    {errorSuccess, L"The operation completed successfully."},
    {1, L"Incorrect function."},
    {errorFileNotFound, L"The system cannot find the file specified."},
    {errorPathNotFound, L"The system cannot find the path specified."},
    {errorTooManyOpenFiles, L"The system cannot open the file."},
    {errorAccessDenied, L"Access is denied."},
    {errorInvalidHandle, L"The handle is invalid."},
    {errorNotEnoughMemory, L"Not enough memory resources are available to process this command."},
    {errorInvalidData, L"The data is invalid."},
    {errorOutOfMemory, L"Not enough memory resources are available to complete this operation."},
    {errorWriteFault, L"The system cannot write to the specified device."},
    {errorGeneralFailure, L"A device attached to the system is not functioning."},
    {errorSharingViolation, L"The process cannot access the file because it is being used by another process."},
    {errorNotSupported, L"The request is not supported."},
    {errorInvalidParameter, L"The parameter is incorrect."},
    {errorDiskFull, L"There is not enough space on the disk."},
    {errorInsufficientBuffer, L"The data area passed to a system call is too small."},
    {errorModuleNotFound, L"The specified module could not be found."},
    {errorProcedureNotFound, L"The specified procedure could not be found."},
    {errorBadPath, L"The specified path is invalid."},
    {errorBusy, L"The requested resource is in use."},
    {errorAlreadyExists, L"Cannot create a file when that file already exists."},
    {errorMoreData, L"More data is available."},
    {waitTimedOut, L"The wait operation timed out."},
    {errorNoMoreItems, L"No more data is available."},
    {298, L"Too many posts were made to a semaphore."},
    {errorInvalidFlags, L"Invalid flags."},
    {errorBadDatabase, L"The configuration registry database is corrupt."},
    {errorRegistryIo, L"An I/O operation initiated by the registry failed unrecoverably."},
    {errorNotRegistryFile,
     L"The system has attempted to load or restore a file into the registry, but the specified file is not in a "
     L"registry file format."},
    {errorKeyDeleted, L"Illegal operation attempted on a registry key that has been marked for deletion."},
    {errorNoUnicodeTranslation, L"No mapping for the Unicode character exists in the target multi-byte code page."},
    {errorInvalidWindow, L"Invalid window handle."},
    {errorNotEnoughQuota, L"Not enough quota is available to process this command."},
    {errorInvalidProfile, L"The specified color profile is invalid."},
    {errorTagNotFound, L"The specified tag was not found."},
    {errorInvalidColourSpace, L"The specified color space is invalid."},
    {errorInvalidTransform, L"The specified color transform is invalid."},
    {0x80004001, L"Not implemented"},
    {0x80004002, L"No such interface supported"},
    {0x80004003, L"Invalid pointer"},
    {0x80004004, L"Operation aborted"},
    {0x80004005, L"Unspecified error"},
    {0x8000FFFF, L"Catastrophic failure"},
};

// The codes of downloads, whose texts a library of their own has on Windows.
constexpr Text downloadTexts[] = {
    {0x800C0002, L"The address is not valid."},
    {0x800C0004, L"No connection to the server could be made."},
    {0x800C0005, L"The server was not found."},
    {0x800C0006, L"There is nothing at this address."},
    {0x800C0007, L"The server did not give the data."},
    {0x800C0008, L"Not all of the data came."},
    {0x800C0009, L"The server asks for a name and a password, or denies access."},
    {0x800C000B, L"The server took too long to answer."},
    {0x800C000D, L"The protocol of the address is not supported."},
    {0x800C000E, L"No secure connection to the server could be made."},
    {0x800C0014, L"The server leads on to another address that is not followed."},
    {0x800C0019, L"The certificate of the server is not valid."},
};

constexpr bool before(Text const& a, Text const& b) noexcept { return a.code < b.code; }
static_assert(std::is_sorted(std::begin(texts), std::end(texts), before));
static_assert(std::is_sorted(std::begin(downloadTexts), std::end(downloadTexts), before));

template <std::size_t count>
bool find(Text const (&table)[count], DWORD code, std::wstring& text) {
    auto const found = std::lower_bound(std::begin(table), std::end(table), Text{code, nullptr}, before);
    if (found == std::end(table) || found->code != code) return false;
    text = found->text;
    return true;
}

}

DWORD lastError() noexcept { return lastErrorCode; }
void setLastError(DWORD code) noexcept { lastErrorCode = code; }

bool errorText(DWORD code, wchar_t const* module, std::wstring& text) {
    bool const ofDownload = module != nullptr && module == std::wstring_view{L"urlmon.dll"};
    if (module != nullptr && !ofDownload) return false;
    if (ofDownload && find(downloadTexts, code, text)) return true;
    // A download may also fail with one of the system's codes. A COM result 0x8007.... carries such a code.
    bool const carries = code >> 16 == 0x8007;
    if (find(texts, carries ? code & 0xFFFF : code, text)) return true;
    // A library that could not be opened has a code of its own beyond those of Windows.
    std::wstring missing = ServiceLibrary::textOfMissing(code);
    if (missing.empty()) return false;
    text = std::move(missing);
    return true;
}

bool systemErrorText(DWORD code, std::wstring& text) { return errorText(code, nullptr, text); }

}
