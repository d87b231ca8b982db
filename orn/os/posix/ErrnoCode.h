/// Translates the kernel's error numbers.
#pragma once

#include "orn/os/Status.h"

#include <cerrno>

namespace ORN::os {

/// The code of Status.h that means the same as an errno, or `otherwise` if there is none.
inline DWORD windowsError(int error, DWORD otherwise) noexcept {
    switch (error) {
        case ENOENT: return errorFileNotFound;
        case ENOTDIR: return errorPathNotFound;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS: return errorAccessDenied;
        case EDQUOT:
        case ENOSPC: return errorDiskFull;
        default: return otherwise;
    }
}

}
