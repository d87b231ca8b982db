#include "orn/os/Environment.h"

#include "orn/os/CodePage.h"

#include <cstdlib>
#include <cstring>

namespace ORN::os {

std::wstring environmentVariable(std::wstring const& name) {
    std::string native(8 * name.size() + 1, '\0');
    int const length =
        wideToMultibyte(name.data(), static_cast<int>(name.size()), native.data(), static_cast<int>(native.size()) - 1);
    native.resize(static_cast<std::size_t>(length));
    char const* const value = std::getenv(native.c_str());
    if (value == nullptr || *value == '\0') return {};

    std::size_t const bytes = std::strlen(value);
    std::wstring wide(4 * bytes, L'\0');
    int const units = multibyteToWide(value, static_cast<int>(bytes), wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(units));
    return wide;
}

}
