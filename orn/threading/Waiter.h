/// How a thread waits for a scheduler.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

namespace ORN::Threading {

/// Waits until an event or thread is signalled.
class ORN_API Waiter {
public:
    /// Returns the result of the wait, 0 when the object is signalled. The handle stays the caller's. A wait may end
    /// otherwise, also by an exception; what was to be waited for then goes on.
    virtual DWORD operator()(HANDLE handle) const = 0;

    virtual ~Waiter();
};

/// Waits as long as it takes and lets only those messages through that other threads send meanwhile: a thread with
/// windows can so wait for a worker that sends it messages, without entering its message loop anew.
class ORN_API BoringWaiter final : public Waiter {
public:
    DWORD operator()(HANDLE handle) const override;
    ~BoringWaiter() override;
};

}
