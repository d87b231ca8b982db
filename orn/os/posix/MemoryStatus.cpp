#include "orn/os/MemoryStatus.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/Status.h"
#include "orn/os/posix/KernelMemory.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/resource.h>

namespace ORN::os {

namespace {

// A file that is not there reads as an empty one, which is what KernelMemory asks for.
std::string contents(std::string const& name) {
    std::ifstream file{name, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::uint64_t addressSpace() {
    rlimit limit;
    // The kernel puts the stack at the top of the addresses that it gives out. Their number is a power of two.
    std::uint64_t const whole = std::bit_ceil(std::uint64_t{reinterpret_cast<std::uintptr_t>(&limit)});
    if (::getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return whole;
    return std::min<std::uint64_t>(limit.rlim_cur, whole);
}

bool failed(DWORD error) {
    setLastError(error);
    return false;
}

}

bool memoryStatus(MemoryStatus& status) {
    if (ORN_OS_REFUSED("GlobalMemoryStatusEx")) return failed(errorNotEnoughMemory);
    // Windows looks at the length, too.
    if (status.length != sizeof status) return failed(errorInvalidParameter);
    return KernelMemory{contents}.fill(status, addressSpace()) || failed(errorInvalidData);
}

}
