#include "orn/os/MemoryStatus.h"

#include "orn/os/Fault.h"

#include <bit>
#include <cstddef>

#include <windows.h>

namespace ORN::os {

// bit_cast below copies the record as bytes, so each field must lie where the system has it.
static_assert(sizeof(MemoryStatus) == sizeof(MEMORYSTATUSEX));
static_assert(offsetof(MemoryStatus, memoryLoad) == offsetof(MEMORYSTATUSEX, dwMemoryLoad));
static_assert(offsetof(MemoryStatus, totalPhysical) == offsetof(MEMORYSTATUSEX, ullTotalPhys));
static_assert(offsetof(MemoryStatus, availablePhysical) == offsetof(MEMORYSTATUSEX, ullAvailPhys));
static_assert(offsetof(MemoryStatus, totalPageFile) == offsetof(MEMORYSTATUSEX, ullTotalPageFile));
static_assert(offsetof(MemoryStatus, availablePageFile) == offsetof(MEMORYSTATUSEX, ullAvailPageFile));
static_assert(offsetof(MemoryStatus, totalVirtual) == offsetof(MEMORYSTATUSEX, ullTotalVirtual));
static_assert(offsetof(MemoryStatus, availableVirtual) == offsetof(MEMORYSTATUSEX, ullAvailVirtual));
static_assert(offsetof(MemoryStatus, availableExtendedVirtual) == offsetof(MEMORYSTATUSEX, ullAvailExtendedVirtual));

bool memoryStatus(MemoryStatus& status) {
    if (ORN_OS_REFUSED("GlobalMemoryStatusEx")) {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    // The system fills the record only if its length is right, so the length goes in with it.
    auto record = std::bit_cast<MEMORYSTATUSEX>(status);
    if (::GlobalMemoryStatusEx(&record) == FALSE) return false;
    status = std::bit_cast<MemoryStatus>(record);
    return true;
}

}
