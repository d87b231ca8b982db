/// Large blocks, straight from the operating system's virtual memory.
#pragma once

#include <cstddef>

namespace ORN::os {

/// A readable and writable block of at least one byte, all zeros, aligned to a page. Null when the system has none.
void* allocateLarge(std::size_t size) noexcept;

/// Gives a block back; size is the one it was asked for with.
void freeLarge(void* block, std::size_t size) noexcept;

}
