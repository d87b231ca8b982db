/// How much memory there is for this process.
#pragma once

#include "orn/os/Types.h"

namespace ORN::os {

/// The system's record MEMORYSTATUSEX: its own length, a percentage, and numbers of bytes. Where the process is limited to
/// less memory than the machine has, the limit counts. Off Windows the page file is the physical memory and the swap space
/// together, and the extended virtual memory is 0.
struct MemoryStatus {
    DWORD length;
    DWORD memoryLoad;  ///< how much of the physical memory is in use, in percent
    unsigned long long totalPhysical, availablePhysical;
    unsigned long long totalPageFile, availablePageFile;
    unsigned long long totalVirtual, availableVirtual;  ///< the address space of this process
    unsigned long long availableExtendedVirtual;
};
static_assert(sizeof(MemoryStatus) == 64);

/// Fills a record whose length has been set. When the system does not give the figures, returns false, sets the last error
/// and leaves the record as it was.
bool memoryStatus(MemoryStatus& status);

}
