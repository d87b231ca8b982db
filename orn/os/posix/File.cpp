#include "orn/os/File.h"

#include "orn/os/CodePage.h"
#include "orn/os/Fault.h"
#include "orn/os/FileStreams.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace ORN::os {

namespace {

/// The name in the system's own encoding; false, with errno set, when it has none.
bool nativeName(std::wstring const& name, std::string& native) {
    native.resize(8 * name.size() + 1);
    bool substituted = false;
    int const length = wideToMultibyteStrictly(name.data(), static_cast<int>(name.size()), native.data(),
                                               static_cast<int>(native.size()), substituted);
    native.resize(static_cast<std::size_t>(length));
    bool const known = length > 0 && !substituted && native.find('\0') == std::string::npos;
    if (!known) errno = ENOENT;
    return known;
}

}

std::FILE* openFile(std::wstring const& name, std::wstring const& mode) {
    if (ORN_OS_REFUSED("fopen")) {
        errno = EACCES;
        return nullptr;
    }
    std::string path;
    char narrow[16] = {};
    bool const known = mode.size() < sizeof narrow &&
                       std::all_of(mode.begin(), mode.end(), [](wchar_t unit) { return unit > 0 && unit < 0x80; });
    if (!known) {
        errno = EINVAL;
        return nullptr;
    }
    std::transform(mode.begin(), mode.end(), narrow, [](wchar_t unit) { return static_cast<char>(unit); });
    return nativeName(name, path) ? std::fopen(path.c_str(), narrow) : nullptr;
}

bool fileExists(std::wstring const& name) {
    std::string path;
    struct stat status;
    return nativeName(name, path) && ::lstat(path.c_str(), &status) == 0;
}

bool seekFile(std::FILE* file, std::int64_t offset, int origin) noexcept {
    if (ORN_OS_REFUSED("fseek")) {
        errno = EIO;
        return false;
    }
    return ::fseeko(file, offset, origin) == 0;
}

std::int64_t tellFile(std::FILE* file) noexcept {
    if (ORN_OS_REFUSED("ftell")) {
        errno = EIO;
        return -1;
    }
    return ::ftello(file);
}

}
