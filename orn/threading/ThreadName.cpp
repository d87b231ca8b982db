#include "orn/threading/ThreadName.h"

#include "orn/os/Waitable.h"

namespace ORN {

void setThreadName(char const* name, DWORD threadId) { os::nameThread(name, threadId); }

}
