#include "orn/os/File.h"

#include "orn/os/Fault.h"
#include "orn/os/FileStreams.h"
#include "orn/os/posix/NativeName.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <sys/stat.h>

namespace ORN::os {

std::FILE* openFile(std::wstring const& name, std::wstring const& mode) {
    if (ORN_OS_REFUSED("fopen")) {
        errno = EACCES;
        return nullptr;
    }
    // The mode takes one letter more below, and a zero at its end. All letters that a mode may have are ASCII.
    char narrow[16] = {};
    bool const known = mode.size() + 1 < sizeof narrow && !mode.empty() &&
                       std::all_of(mode.begin(), mode.end(), [](wchar_t unit) { return unit > 0 && unit < 0x80; });
    if (!known) {
        errno = EINVAL;
        return nullptr;
    }
    std::transform(mode.begin(), mode.end(), narrow + 1, [](wchar_t unit) { return static_cast<char>(unit); });
    narrow[0] = std::exchange(narrow[1], 'e');  // "rb" becomes "reb": closed in the programs that this one starts
    // A name that the code page cannot express is empty here. fopen then fails as for a missing file.
    std::string const native = nativeName(name);
    std::FILE* file = nullptr;
    do {
        file = std::fopen(native.c_str(), narrow);
    } while (file == nullptr && errno == EINTR);  // a named pipe is opened when its other end is, which may take long
    return file;
}

bool fileExists(std::wstring const& name) {
    // A link that leads nowhere takes its name all the same.
    struct stat status;
    return ::lstat(nativeName(name).c_str(), &status) == 0;
}

// The C library of this system makes no difference between text and bytes.
std::FILE* standardInput() noexcept { return stdin; }

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
