/// Where the threads of one slot of the parking table sleep, over a futex: a word that the kernel compares before it puts
/// a thread to sleep. The word is an epoch.
///
/// A thread takes a ticket, the epoch of that moment, before it looks for the last time whether it must wait at all, and
/// sleeps only while its ticket is the epoch. A release moves the epoch on and so wakes every ticket older than itself,
/// also those whose holders have not begun to sleep. Nothing is handed over, so nobody can take what was meant for
/// another; and every release asks the kernel by itself, so that none relies on another's being carried on.
///
/// A ticket is mistaken for a newer one only if its holder is held up, between taking it and sleeping on it, while exactly
/// a multiple of 2^32 releases with waiting threads go by.
#pragma once

#include "orn/os/Status.h"

#include <cstdint>

namespace ORN::Threading {

/// Kernel names the atomic types and the two calls of the system, so that a test can drive every step.
template <typename Kernel>
class EpochParking {
public:
    using Counter = typename Kernel::template Atomic<std::uint32_t>;
    using Ticket = std::uint32_t;

    constexpr EpochParking() noexcept = default;

    bool create() noexcept { return true; }
    void close() noexcept {}

    Ticket takeTicket() { return epoch_.load(); }

    /// Sleeps until a release younger than the ticket, at most `timeout` milliseconds. After waitObject the ticket is a new
    /// one; the other results are waitTimedOut and waitFailed.
    DWORD sleep(Ticket& ticket, DWORD timeout) {
        DWORD const result = Kernel::wait(epoch_, ticket, timeout);
        if (result == os::waitObject) ticket = takeTicket();
        return result;
    }

    void giveBack(Ticket) noexcept {}

    /// Wakes every ticket that is out. False, told by lastError(), when the system refuses; the next call makes up for it.
    bool wake() {
        epoch_.fetch_add(1);
        return Kernel::wakeAll(epoch_);
    }

    bool idle() const { return true; }

private:
    Counter epoch_{0};
};

}
