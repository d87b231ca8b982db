/// File names in the system's own encoding, which is the multibyte code page.
#pragma once

#include "orn/os/CodePage.h"

#include <string>

namespace ORN::os {

/// Empty, which names no file, when there is none: the name is empty, has a zero inside, or the code page lacks one of its
/// characters.
inline std::string nativeName(std::wstring const& name) {
    std::string native(8 * name.size() + 1, '\0');
    bool substituted = false;
    int const length = wideToMultibyteStrictly(name.data(), static_cast<int>(name.size()), native.data(),
                                               static_cast<int>(native.size()), substituted);
    native.resize(static_cast<std::size_t>(length));
    return !substituted && native.find('\0') == std::string::npos ? native : std::string{};
}

/// Empty when nativeName would not give the same name back.
inline std::wstring wideName(std::string const& native) {
    std::wstring wide(4 * native.size() + 1, L'\0');
    int const units =
        multibyteToWide(native.data(), static_cast<int>(native.size()), wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(units));
    return nativeName(wide) == native ? wide : std::wstring{};
}

}
