#include "orn/os/File.h"

#include "orn/os/Fault.h"
#include "orn/os/FileStreams.h"

#include <cerrno>
#include <cwchar>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

namespace ORN::os {

namespace {

// The flags of a mode, so that started programs do not inherit the file: not every runtime knows a letter for that. 0
// for a mode with letters beyond those of the C standard.
int openFlags(std::wstring const& mode) noexcept {
    if (mode.empty() || mode.find_first_not_of(L"btx+", 1) != std::wstring::npos) return 0;
    bool const both = mode.find(L'+') != std::wstring::npos;
    int flags = _O_NOINHERIT | (both ? _O_RDWR : mode[0] == L'r' ? _O_RDONLY : _O_WRONLY);
    flags |= mode.find(L'b') != std::wstring::npos ? _O_BINARY : 0;
    flags |= mode.find(L't') != std::wstring::npos ? _O_TEXT : 0;
    flags |= mode.find(L'x') != std::wstring::npos ? _O_EXCL : 0;
    switch (mode[0]) {
        case L'r': return flags;
        case L'w': return flags | _O_CREAT | _O_TRUNC;
        case L'a': return flags | _O_CREAT | _O_APPEND;
        default: return 0;
    }
}

}

std::FILE* openFile(std::wstring const& name, std::wstring const& mode) {
    if (ORN_OS_REFUSED("fopen")) {
        errno = EACCES;
        return nullptr;
    }
    // The system would read the name only up to the zero, and open another file.
    if (name.find(L'\0') != std::wstring::npos) {
        errno = ENOENT;
        return nullptr;
    }
    int const flags = openFlags(mode);
    if (flags == 0) return ::_wfopen(name.c_str(), mode.c_str());  // the runtime judges the mode

    // Without the right to write, a new file would be marked as read-only.
    int const file = ::_wopen(name.c_str(), flags, _S_IREAD | _S_IWRITE);
    if (file == -1) return nullptr;
    // The file is open already, and some runtimes refuse this letter.
    std::wstring known = mode;
    std::erase(known, L'x');
    std::FILE* const stream = ::_wfdopen(file, known.c_str());
    if (stream == nullptr) ::_close(file);
    return stream;
}

bool fileExists(std::wstring const& name) {
    return name.find(L'\0') == std::wstring::npos && ::GetFileAttributesW(name.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::FILE* standardInput() noexcept {
    ::_setmode(::_fileno(stdin), _O_BINARY);  // or a 1A would end it, and CR LF would be one byte
    return stdin;
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
