#include "orn/os/MemoryStatus.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
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

[[maybe_unused]] constexpr DWORD notEnoughMemory = 8;
constexpr DWORD invalidData = 13, invalidParameter = 87;

std::string contents(std::string const& name) {
    std::ifstream file{name, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::uint64_t addressSpace() {
    rlimit limit;
    // Stacks lie at the top of what the kernel gives out where nobody asks for more, which is a power of two.
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
    if (ORN_OS_REFUSED("GlobalMemoryStatusEx")) return failed(notEnoughMemory);
    if (status.length != sizeof status) return failed(invalidParameter);
    return KernelMemory{contents}.fill(status, addressSpace()) || failed(invalidData);
}

}
