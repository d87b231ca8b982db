/// Files in the user's cache folder.
#pragma once

#include "orn/os/posix/ErrnoCode.h"
#include "orn/os/posix/UserFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace ORN::os {

inline std::string cacheFolder() { return userFolder("XDG_CACHE_HOME", ".cache"); }

/// A file that is being written. It has no name where the system has such files, so that not even a killed program
/// leaves it behind. Elsewhere it has a name, which is removed unless the file gets its place. Failures are in errno.
class NewFile {
public:
    explicit NewFile(std::string const& folder) {
        bool const canBeNamed = ::access("/proc/self/fd", X_OK) == 0;
        descriptor_ = canBeNamed ? ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600) : -1;
        if (descriptor_ >= 0) return;
        name_ = folder + "/new.XXXXXX";
        descriptor_ = ::mkostemp(name_.data(), O_CLOEXEC);
        if (descriptor_ < 0) name_.clear();
    }
    ~NewFile() {
        if (descriptor_ >= 0) ::close(descriptor_);
        if (!name_.empty()) ::unlink(name_.c_str());
    }
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;

    /// Whether there is a file. Without one the other functions must not be called.
    bool isMade() const noexcept { return descriptor_ >= 0; }

    /// Writes all bytes; false after a failure.
    bool write(void const* bytes, std::size_t count) noexcept {
        auto const* next = static_cast<char const*>(bytes);
        while (count > 0) {
            ssize_t const written = ::write(descriptor_, next, count);
            if (written < 0 && errno != EINTR) return false;
            if (written <= 0) continue;
            next += written;
            count -= static_cast<std::size_t>(written);
        }
        return true;
    }

    /// Gives the file its name, in the same folder. It replaces the file of that name.
    bool place(std::string const& path) {
        if (::fsync(descriptor_) != 0) return false;
        if (name_.empty()) {
            // Only a file with a name can take another's place.
            unsigned long long random[2];
            if (::getentropy(random, sizeof random) != 0) return false;
            char end[2 * 16 + 2], self[32];
            std::snprintf(end, sizeof end, ".%016llx%016llx", random[0], random[1]);
            std::snprintf(self, sizeof self, "/proc/self/fd/%d", descriptor_);
            std::string name = path + end;
            if (::linkat(AT_FDCWD, self, AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
            name_.swap(name);
        }
        if (::rename(name_.c_str(), path.c_str()) != 0) return false;
        name_.clear();
        return true;
    }

private:
    std::string name_;  ///< empty when there is nothing to remove
    int descriptor_;
};

}
