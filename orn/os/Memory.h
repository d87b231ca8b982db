/// Large blocks, straight from the operating system's virtual memory.
#pragma once

#include <cstddef>

namespace ORN::os {

/// Allocates a block of at least one byte, filled with zeros and aligned to a page. Null when the system has no memory.
void* allocateLarge(std::size_t size) noexcept;

/// Frees a block. `size` is the size that it was allocated with.
void freeLarge(void* block, std::size_t size) noexcept;

}
