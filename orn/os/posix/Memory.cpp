#include "orn/os/Memory.h"

#include "orn/os/Fault.h"

#include <sys/mman.h>

namespace ORN::os {

void* allocateLarge(std::size_t size) noexcept {
    if (ORN_OS_REFUSED("VirtualAlloc")) return nullptr;
    // Fresh pages are zero, and the system has them back as soon as they are freed. Both are so on Windows.
    void* const block = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return block != MAP_FAILED ? block : nullptr;
}

// The kernel unmaps every page that the range touches, so the size need not be a multiple of a page.
void freeLarge(void* block, std::size_t size) noexcept { munmap(block, size); }

}
