#include "orn/os/File.h"

#include "orn/os/Fault.h"

#include <cerrno>
#include <cstring>
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

std::size_t readFile(std::FILE* file, void* buffer, std::size_t count, bool& failed) noexcept {
    if (ORN_OS_REFUSED("fread")) {
        errno = EIO;
        failed = true;
        return 0;
    }
    std::size_t const done = std::fread(buffer, 1, count, file);
    failed = std::ferror(file) != 0;
    return done;
}

std::size_t writeFile(std::FILE* file, void const* buffer, std::size_t count, bool& failed) noexcept {
    if (ORN_OS_REFUSED("fwrite")) {
        errno = ENOSPC;
        failed = true;
        return 0;
    }
    std::size_t const done = std::fwrite(buffer, 1, count, file);
    failed = std::ferror(file) != 0;
    return done;
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

bool flushFile(std::FILE* file) noexcept {
    if (ORN_OS_REFUSED("fflush")) {
        errno = ENOSPC;
        return false;
    }
    return std::fflush(file) == 0;
}

bool closeFile(std::FILE* file) noexcept {
    bool const refused = ORN_OS_REFUSED("fclose");
    bool const closed = std::fclose(file) == 0;
    if (refused) errno = ENOSPC;
    return closed && !refused;
}

std::string errnoText() { return std::strerror(errno); }

}
