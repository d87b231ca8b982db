#include "orn/threading/Waiter.h"

#include "orn/os/Waitable.h"

namespace ORN::Threading {

Waiter::~Waiter() = default;
BoringWaiter::~BoringWaiter() = default;

DWORD BoringWaiter::operator()(HANDLE handle) const { return os::waitDeliveringSentMessages(handle); }

}
