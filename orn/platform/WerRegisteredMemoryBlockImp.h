/// The system's functions that registered blocks go to.
#pragma once

#include "orn/os/Types.h"

namespace ORN {

using RegisterMemoryBlock = HRESULT(void* address, DWORD size);
using UnregisterMemoryBlock = HRESULT(void* address);

/// Null where the system has none. Filled when the library is loaded.
extern RegisterMemoryBlock* WerRegisterMemoryBlock;
extern UnregisterMemoryBlock* WerUnregisterMemoryBlock;

}
