#include "orn/os/File.h"

#include "orn/os/Fault.h"
#include "orn/os/FileStreams.h"

#include <cerrno>
#include <cwchar>

#include <windows.h>

namespace ORN::os {

std::FILE* openFile(std::wstring const& name, std::wstring const& mode) {
    if (ORN_OS_REFUSED("fopen")) {
        errno = EACCES;
        return nullptr;
    }
    if (name.find(L'\0') != std::wstring::npos) {
        errno = ENOENT;
        return nullptr;
    }
    return ::_wfopen(name.c_str(), mode.c_str());
}

bool fileExists(std::wstring const& name) {
    return name.find(L'\0') == std::wstring::npos && ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool seekFile(std::FILE* file, std::int64_t offset, int origin) noexcept {
    if (ORN_OS_REFUSED("fseek")) {
        errno = EIO;
        return false;
    }
    return ::_fseeki64(file, offset, origin) == 0;
}

std::int64_t tellFile(std::FILE* file) noexcept {
    if (ORN_OS_REFUSED("ftell")) {
        errno = EIO;
        return -1;
    }
    return ::_ftelli64(file);
}

}
