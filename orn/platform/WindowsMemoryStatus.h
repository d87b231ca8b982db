/// The machine's memory figures.
#pragma once

#include "orn/Export.h"
#include "orn/os/MemoryStatus.h"

namespace ORN {

/// The memory figures at the moment of construction: a plain value of one record. On Linux they are the kernel's figures,
/// cut to the limits of the process and of its control groups (of both versions, and nested ones).
class ORN_API WindowsMemoryStatus {
public:
    /// The system's MEMORYSTATUSEX, field by field.
    using PODTYPE = os::MemoryStatus;

    WindowsMemoryStatus();  ///< throws WinError when the system does not give them
    explicit WindowsMemoryStatus(PODTYPE const& status) noexcept : status_{status} {}  ///< figures of any origin

    PODTYPE const& toPod() const noexcept { return status_; }  ///< all figures

    /// The memory that this process can make use of, in bytes: the smaller of the physical memory and the address space.
    unsigned long long usefulRam() const noexcept;

private:
    PODTYPE status_;
};

}
