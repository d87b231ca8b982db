#include "orn/platform/WindowsMemoryStatus.h"

#include "orn/foundation/Error.h"
#include "orn/os/ErrorText.h"

#include <algorithm>
#include <type_traits>

namespace ORN {

static_assert(sizeof(WindowsMemoryStatus) == 64 && std::is_trivially_copyable_v<WindowsMemoryStatus>);

WindowsMemoryStatus::WindowsMemoryStatus() : status_{} {
    // The system refuses a record that does not state its length.
    status_.length = sizeof status_;
    if (!os::memoryStatus(status_)) throw WinError{L"GlobalMemoryStatusEx", os::lastError()};
}

unsigned long long WindowsMemoryStatus::usefulRam() const noexcept {
    // A limit on the addresses of a process may be below the memory of the machine.
    return std::min(status_.totalPhysical, status_.totalVirtual);
}

}
