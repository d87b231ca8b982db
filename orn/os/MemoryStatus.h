/// How much memory there is for this process.
#pragma once

#include "orn/os/Types.h"

namespace ORN::os {

/// The system's MEMORYSTATUSEX as it is published: the length of the record itself, a percentage, and numbers of bytes.
/// What a process may use at most, by the limits set for it, counts as what there is. Off Windows the page file is the
/// physical memory and the swap space together, and the extended virtual memory is 0.
struct MemoryStatus {
    DWORD length;
    DWORD memoryLoad;  ///< how much of the physical memory is in use, in percent
    unsigned long long totalPhysical, availablePhysical;
    unsigned long long totalPageFile, availablePageFile;
    unsigned long long totalVirtual, availableVirtual;  ///< the address space of this process
    unsigned long long availableExtendedVirtual;
};
static_assert(sizeof(MemoryStatus) == 64);

/// Fills a record that tells its own length. False, with the last error set and the record as it was, when the system does
/// not give the figures.
bool memoryStatus(MemoryStatus& status);

}
