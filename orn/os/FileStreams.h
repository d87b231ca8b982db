/// The part of File.h that is the same on every system, by the C library. Each system's File.cpp includes it once.
#pragma once

#include "orn/os/Fault.h"
#include "orn/os/File.h"

#include <cerrno>
#include <cstring>

// NOLINTBEGIN(misc-definitions-in-headers)
namespace ORN::os {

// Reads or writes behind what is done. A signal that interrupts this is no failure.
template <typename Transfer>
std::size_t transfer(std::FILE* file, bool& failed, Transfer more) noexcept {
    std::size_t done = 0;
    do {
        std::clearerr(file);
        done += more(done);
        failed = std::ferror(file) != 0;
    } while (failed && errno == EINTR);
    return done;
}

std::size_t readFile(std::FILE* file, void* buffer, std::size_t count, bool& failed) noexcept {
    if (ORN_OS_REFUSED("fread")) {
        std::size_t const done = std::fread(buffer, 1, count / 2, file);
        errno = EIO;
        failed = true;
        return done;
    }
    auto* const to = static_cast<char*>(buffer);
    return transfer(file, failed, [&](std::size_t done) { return std::fread(to + done, 1, count - done, file); });
}

std::size_t writeFile(std::FILE* file, void const* buffer, std::size_t count, bool& failed) noexcept {
    if (ORN_OS_REFUSED("fwrite")) {  // like a disk that becomes full half-way
        std::size_t const done = std::fwrite(buffer, 1, count / 2, file);
        errno = ENOSPC;
        failed = true;
        return done;
    }
    auto const* const from = static_cast<char const*>(buffer);
    return transfer(file, failed, [&](std::size_t done) { return std::fwrite(from + done, 1, count - done, file); });
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
// NOLINTEND(misc-definitions-in-headers)
