/// The system's functions that register blocks.
#pragma once

#include "orn/os/Types.h"

namespace ORN {

using RegisterMemoryBlock = HRESULT(void* address, DWORD size);
using UnregisterMemoryBlock = HRESULT(void* address);

/// Set when the library is loaded. Null where the system has no such functions.
extern RegisterMemoryBlock* WerRegisterMemoryBlock;
extern UnregisterMemoryBlock* WerUnregisterMemoryBlock;

}
