/// How a thread waits for a scheduler.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN::Threading {

/// Waits until an event or thread is signalled.
class ORN_API Waiter {
public:
    /// Returns the result of the wait: 0 when the object is signalled. The caller keeps the handle. A waiter may give
    /// up with another result or an exception; the object of the wait then goes on.
    virtual DWORD operator()(HANDLE handle) const = 0;

    virtual ~Waiter();
};

/// Waits without a time limit. Meanwhile it delivers only messages that other threads send. So a thread with windows
/// can wait for a worker that sends it messages, without entering its message loop again.
class ORN_API BoringWaiter final : public Waiter {
public:
    DWORD operator()(HANDLE handle) const override;
    ~BoringWaiter() override;
};

}
