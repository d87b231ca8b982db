/// What the kernel's error numbers are called on Windows.
#pragma once

#include "orn/os/Types.h"

#include <cerrno>

namespace ORN::os {

/// The Windows code for an errno, or the other one when there is none.
inline DWORD windowsError(int error, DWORD otherwise) noexcept {
    switch (error) {
        case ENOENT: return 2;
        case ENOTDIR: return 3;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS: return 5;
        case EDQUOT:
        case ENOSPC: return 112;
        default: return otherwise;
    }
}

}
