#include "orn/os/Environment.h"

#include "orn/os/CodePage.h"
#include "orn/os/Fault.h"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <new>

namespace ORN::os {

namespace {

/// Null when there is no such variable. A program with another user's rights gets none, because values name files.
char const* nativeVariable(std::wstring const& name) {
    // No code page has a character of more than eight bytes.
    std::string native(8 * name.size() + 1, '\0');
    int const length =
        wideToMultibyte(name.data(), static_cast<int>(name.size()), native.data(), static_cast<int>(native.size()) - 1);
    // A name that cannot be converted becomes empty here, and no variable has the empty name.
    native.resize(static_cast<std::size_t>(length));
    return ::secure_getenv(native.c_str());
}

std::wstring wide(char const* value) {
    // The conversion takes a length of 0 for an error.
    if (*value == '\0') return {};
    std::size_t const bytes = std::strlen(value);
    std::wstring units(4 * bytes, L'\0');
    int const length = multibyteToWide(value, static_cast<int>(bytes), units.data(), static_cast<int>(units.size()));
    units.resize(static_cast<std::size_t>(length));
    return units;
}

}

std::wstring environmentVariable(std::wstring const& name) {
    char const* const value = nativeVariable(name);
    return value != nullptr ? wide(value) : std::wstring{};
}

DWORD expandEnvironment(wchar_t const* text, wchar_t* buffer, DWORD size) noexcept {
    if (ORN_OS_REFUSED("ExpandEnvironmentStringsW")) return 0;
    try {
        std::wstring result;
        while (*text != L'\0') {
            wchar_t const* const end = *text == L'%' ? std::wcschr(text + 1, L'%') : nullptr;
            char const* const value = end != nullptr ? nativeVariable({text + 1, end}) : nullptr;
            if (end == nullptr) {
                result += *text++;
                continue;
            }
            // A reference that names no variable stays with both of its signs. The second one begins no other reference.
            result += value != nullptr ? wide(value) : std::wstring{text, end + 1};
            text = end + 1;
        }
        if (result.size() >= 0xFFFFFFFF) return 0;
        auto const needed = static_cast<DWORD>(result.size() + 1);
        // The count says how much room is needed, and a buffer with less room stays as it was.
        if (needed <= size) std::wmemcpy(buffer, result.c_str(), needed);
        return needed;
    } catch (std::bad_alloc const&) {
        return 0;
    }
}

std::int64_t secondsSince1970() noexcept { return std::time(nullptr); }

std::string localTimeText(std::int64_t seconds) {
    char text[64];
    std::time_t const time{seconds};
    // The result is null for a year that the C library cannot write.
    return ::ctime_r(&time, text) != nullptr ? text : "";
}

}
