/// The sleep of the threads of one parking slot, over a futex: a word that the kernel compares before it puts a thread
/// to sleep. The word is an epoch.
///
/// A thread takes a ticket, the current epoch, before it reads its lock word for the last time. It sleeps only while
/// its ticket is the epoch. A release moves the epoch on, and so ends the wait of every older ticket, also when its
/// holder does not sleep yet. A wake-up is not handed to one thread, so no thread can take the wake-up of another.
/// Every release calls the kernel itself, so none depends on the progress of another.
///
/// A ticket is mistaken for a newer one only if its holder stands still, between taking it and sleeping on it, during
/// exactly a multiple of 2^32 releases with waiting threads.
#pragma once

#include "orn/os/Status.h"

#include <cstdint>

namespace ORN::Threading {

/// Kernel gives the atomic types and the two calls of the system, so that a test can drive every step.
template <typename Kernel>
class EpochParking {
public:
    using Counter = typename Kernel::template Atomic<std::uint32_t>;
    using Ticket = std::uint32_t;

    constexpr EpochParking() noexcept = default;

    bool create() noexcept { return true; }
    void close() noexcept {}

    Ticket takeTicket() { return epoch_.load(); }

    /// Sleeps until a release younger than the ticket, at most `timeout` milliseconds. After waitObject the ticket is a
    /// new one; the other results are waitTimedOut and waitFailed.
    DWORD sleep(Ticket& ticket, DWORD timeout) {
        DWORD const result = Kernel::wait(epoch_, ticket, timeout);
        if (result == os::waitObject) ticket = takeTicket();
        return result;
    }

    void giveBack(Ticket) noexcept {}

    /// Ends the wait of every ticket. False when the system refuses, with the reason in lastError(); the next call then
    /// wakes the threads.
    bool wake() {
        epoch_.fetch_add(1);
        return Kernel::wakeAll(epoch_);
    }

    bool idle() const { return true; }

private:
    Counter epoch_{0};
};

}
