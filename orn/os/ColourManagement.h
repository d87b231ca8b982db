/// The system's management of ICC colour profiles. Calls that fail leave the reason in the thread's last error. Numbers
/// are in the host's order; signatures have their first character in the most significant byte.
///
/// The calls that fill a buffer work in two steps: without a buffer they only tell the size; with one they need it to
/// hold at least that many bytes. Both leave the size that is needed behind.
#pragma once

#include "orn/os/Types.h"

#include <cstddef>

namespace ORN::os {

enum class ProfileKind : DWORD { fileName = 1, memory = 2 };

struct ProfileSource {
    ProfileKind kind;
    void const* data;  ///< the bytes of the profile, or a wide name that ends with a zero
    DWORD size;        ///< bytes of the data; a wide character counts two
};

struct ProfileHeader {
    DWORD profileClass;
    DWORD colourSpace;      ///< of the data
    DWORD connectionSpace;  ///< what the profile translates them to
};

/// A colour on its way through a transform: 0 to 65535.
struct DeviceColour {
    WORD red, green, blue;
};

/// The path of a file that holds the system's standard sRGB profile, of which size is the number of bytes, two to a
/// character. On success the path ends with a zero.
bool standardProfile(wchar_t* path, DWORD& size);

/// Opens a profile for reading; null when it fails. The source need not outlive the call.
HPROFILE openProfile(ProfileSource const& source);
void closeProfile(HPROFILE profile) noexcept;

bool profileBytes(HPROFILE profile, void* buffer, DWORD& size);
bool profileHeader(HPROFILE profile, ProfileHeader& header);

/// The element of a tag, as it is stored. For a tag that is missing the size stays as it is, and the call fails.
bool profileElement(HPROFILE profile, DWORD tag, void* buffer, DWORD& size);

/// A transform from the first profile through the others, in the best quality; null when it fails. It does not need the
/// profiles afterwards. Intent: an ICC rendering intent.
HTRANSFORM createTransform(HPROFILE const* profiles, DWORD count, DWORD intent);
void deleteTransform(HTRANSFORM transform) noexcept;

/// Takes RGB to RGB in its place, for a transform that has these at its ends. Any number of threads may use one transform.
bool translateColours(HTRANSFORM transform, DeviceColour* colours, DWORD count);

}
