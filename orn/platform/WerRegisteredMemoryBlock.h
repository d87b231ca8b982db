/// Memory that the system's error reports are to contain.
#pragma once

#include "orn/Export.h"

namespace ORN {

/// A block of memory, registered while this lives where the system has such a registration (Windows); elsewhere it is
/// nothing. The block stays the caller's, who keeps it that long. A refused registration is no error: reports lack the
/// block. Windows takes a limited number of blocks, of at most 65,536 bytes each.
class ORN_API WerRegisteredMemoryBlock {
public:
    /// size is in bytes. Throws ORN::OrnError "integer value right out of range" when there is a registration and the
    /// size is more than 0xFFFFFFFF.
    [[nodiscard]] WerRegisteredMemoryBlock(void* address, unsigned long long size);
    ~WerRegisteredMemoryBlock();
    WerRegisteredMemoryBlock(WerRegisteredMemoryBlock const&) = delete;
    WerRegisteredMemoryBlock& operator=(WerRegisteredMemoryBlock const&) = delete;

private:
    void* address_;  ///< of what was registered, or null
};

}
