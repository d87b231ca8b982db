#include "orn/os/Memory.h"

#include "orn/os/Fault.h"

#include <windows.h>

namespace ORN::os {

void* allocateLarge(std::size_t size) noexcept {
    if (ORN_OS_REFUSED("VirtualAlloc")) return nullptr;
    // Without an address to commit at, the system also reserves the pages. It fills them with zeros.
    return VirtualAlloc(nullptr, size, MEM_COMMIT, PAGE_READWRITE);
}

// A block is released whole, and then its size must be given as 0.
void freeLarge(void* block, std::size_t) noexcept { VirtualFree(block, 0, MEM_RELEASE); }

}
