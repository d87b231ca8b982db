/// Names of threads, for debuggers.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN {

/// Names a thread, cut to the length that the system takes (15 bytes on Linux); 0xFFFFFFFF is the calling thread. Without
/// a debugger, or when there is no such thread, nothing happens.
ORN_API void setThreadName(char const* name, DWORD threadId);

}
