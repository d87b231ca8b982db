#include "orn/os/ColourManagement.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <icm.h>

#include <iterator>

namespace ORN::os {

namespace {

DWORD const standardRGB = 0x73524742;  // "sRGB"

// Where no faults are planted, the macro drops its argument.
bool isRefused([[maybe_unused]] char const* call) noexcept {
    if (!ORN_OS_REFUSED(call)) return false;
    SetLastError(ERROR_ACCESS_DENIED);
    return true;
}

}

bool standardProfile(wchar_t* path, DWORD& size) {
    if (isRefused("GetStandardColorSpaceProfile")) return false;
    if (path != nullptr) return GetStandardColorSpaceProfileW(nullptr, standardRGB, path, &size) != FALSE;
    // A call that can only tell the size may count as a failure, so the size that it leaves decides.
    size = 0;
    GetStandardColorSpaceProfileW(nullptr, standardRGB, nullptr, &size);
    if (size == 0) {  // Wine tells the size only of a buffer that is too small
        wchar_t none = 0;
        GetStandardColorSpaceProfileW(nullptr, standardRGB, &none, &size);
    }
    return size != 0;
}

HPROFILE openProfile(ProfileSource const& source) {
    if (isRefused("OpenColorProfile")) return nullptr;
    // PROFILE has no pointer to const data, but a profile that is opened for reading leaves its data alone.
    PROFILE profile{static_cast<DWORD>(source.kind), const_cast<void*>(source.data), source.size};
    return OpenColorProfileW(&profile, PROFILE_READ, FILE_SHARE_READ, OPEN_EXISTING);
}

void closeProfile(HPROFILE profile) noexcept { CloseColorProfile(profile); }

bool profileBytes(HPROFILE profile, void* buffer, DWORD& size) {
    if (isRefused("GetColorProfileFromHandle")) return false;
    return GetColorProfileFromHandle(profile, static_cast<BYTE*>(buffer), &size) != FALSE;
}

bool profileHeader(HPROFILE profile, ProfileHeader& header) {
    if (isRefused("GetColorProfileHeader")) return false;
    PROFILEHEADER read;
    if (!GetColorProfileHeader(profile, &read)) return false;
    header = {read.phClass, read.phDataColorSpace, read.phConnectionSpace};
    return true;
}

bool profileElement(HPROFILE profile, DWORD tag, void* buffer, DWORD& size) {
    if (isRefused("GetColorProfileElement")) return false;
    // The call needs a place for the answer whether other tags share the element. Nobody asks for that here.
    BOOL reference = FALSE;
    return GetColorProfileElement(profile, tag, 0, &size, buffer, &reference) != FALSE;
}

HTRANSFORM createTransform(HPROFILE const* profiles, DWORD count, DWORD intent) {
    if (isRefused("CreateMultiProfileTransform")) return nullptr;
    // A single intent applies at every step from one profile to the next. The array of profiles is only read.
    return CreateMultiProfileTransform(const_cast<HPROFILE*>(profiles), count, &intent, 1, BEST_MODE, INDEX_DONT_CARE);
}

void deleteTransform(HTRANSFORM transform) noexcept { DeleteColorTransform(transform); }

bool translateColours(HTRANSFORM transform, DeviceColour* colours, DWORD count) {
    if (isRefused("TranslateColors")) return false;
    // The system's COLOR has room for every kind of colour, and is larger than ours. So the colours go through arrays
    // of it, piece by piece. After a failure the pieces before it are translated already.
    COLOR from[64], to[64];
    while (count != 0) {
        DWORD const some = count < std::size(from) ? count : static_cast<DWORD>(std::size(from));
        for (DWORD i = 0; i != some; ++i) from[i].rgb = {colours[i].red, colours[i].green, colours[i].blue};
        if (!TranslateColors(transform, from, some, COLOR_RGB, to, COLOR_RGB)) return false;
        for (DWORD i = 0; i != some; ++i) colours[i] = {to[i].rgb.red, to[i].rgb.green, to[i].rgb.blue};
        colours += some, count -= some;
    }
    return true;
}

}
