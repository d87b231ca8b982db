/// Memory that the system's error reports shall contain.
#pragma once

#include "orn/Export.h"

namespace ORN {

/// Registers a block of memory for error reports while this object lives. Does nothing off Windows. The block stays the
/// caller's, who must keep it as long. A refused registration is no error: reports lack the block then. Windows takes a
/// limited number of blocks, of at most 65,536 bytes each.
class ORN_API WerRegisteredMemoryBlock {
public:
    /// `size` is in bytes. Throws ORN::OrnError "integer value right out of range" for more than 0xFFFFFFFF bytes, where the
    /// system has such reports.
    [[nodiscard]] WerRegisteredMemoryBlock(void* address, unsigned long long size);
    ~WerRegisteredMemoryBlock();
    WerRegisteredMemoryBlock(WerRegisteredMemoryBlock const&) = delete;
    WerRegisteredMemoryBlock& operator=(WerRegisteredMemoryBlock const&) = delete;

private:
    void* address_;  ///< of the registered block, or null
};

}
