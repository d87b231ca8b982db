#include "orn/os/Environment.h"

#include "orn/os/Fault.h"

#include <ctime>

#include <windows.h>

namespace ORN::os {

std::wstring environmentVariable(std::wstring const& name) {
    std::wstring value(128, L'\0');
    // Another thread may make the value longer between two calls, so each answer is compared with the room anew. A
    // missing variable has the length 0, as an empty one has.
    for (;;) {
        DWORD const length = ::GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
        bool const fits = length < value.size();
        value.resize(length);  // which counts the terminator while it does not fit
        if (fits) return value;
    }
}

DWORD expandEnvironment(wchar_t const* text, wchar_t* buffer, DWORD size) noexcept {
    if (ORN_OS_REFUSED("ExpandEnvironmentStringsW")) return 0;
    return ::ExpandEnvironmentStringsW(text, buffer, size);
}

std::int64_t secondsSince1970() noexcept { return std::time(nullptr); }

std::string localTimeText(std::int64_t seconds) {
    __time64_t const lastOfYear3000 = 0x793406FFF;  // the runtime ends the process for a later time
    if (seconds < 0 || seconds > lastOfYear3000) return {};
    char text[64];
    __time64_t const time{seconds};
    return ::_ctime64_s(text, sizeof text, &time) == 0 ? text : "";
}

}
