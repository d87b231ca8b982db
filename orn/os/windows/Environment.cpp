#include "orn/os/Environment.h"

#include <windows.h>

namespace ORN::os {

std::wstring environmentVariable(std::wstring const& name) {
    std::wstring value(128, L'\0');
    for (;;) {
        DWORD const length = ::GetEnvironmentVariableW(name.c_str(), value.data(), static_cast<DWORD>(value.size()));
        bool const fits = length < value.size();
        value.resize(length);  // which counts the terminator while it does not fit
        if (fits) return value;
    }
}

}
