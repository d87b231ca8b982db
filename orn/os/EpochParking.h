/// Where the threads of one slot of the parking table sleep, over a futex: a word that the kernel compares before it puts
/// a thread to sleep. The word is an epoch.
///
/// A thread takes a ticket, the epoch of that moment, before it looks for the last time whether it must wait at all, and
/// sleeps only while its ticket is the epoch. A release moves the epoch on and so wakes every ticket older than itself,
/// also those whose holders have not begun to sleep. Nothing is handed over, so nobody can take what was meant for
/// another.
///
/// The lowest bit says that a ticket of this epoch is out. A release that finds it clear has nobody to wake: whoever held
/// an older ticket was woken by the release that cleared it, and whoever takes one later sees what was released. A ticket
/// is mistaken for a newer one only if its holder is held up, between taking it and sleeping on it, while exactly a
/// multiple of 2^31 epochs with tickets of their own go by.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>

namespace ORN::os {

/// Kernel names the atomic types and the two calls of the system, so that a test can drive every step.
template <typename Kernel>
class EpochParking {
public:
    using Counter = typename Kernel::template Atomic<std::uint32_t>;
    using Ticket = std::uint32_t;

    constexpr EpochParking() noexcept = default;

    bool create() noexcept { return true; }
    void close() noexcept {}

    Ticket takeTicket() { return epoch_.fetch_or(ticketOut) | ticketOut; }

    /// Sleeps until a release younger than the ticket, at most `timeout` milliseconds (0xFFFFFFFF: no limit). 0 with a
    /// new ticket, 258 when the time is over, anything else is a failure, told by lastError().
    DWORD sleep(Ticket& ticket, DWORD timeout) {
        DWORD const result = Kernel::wait(epoch_, ticket, timeout);
        if (result == 0) ticket = takeTicket();
        return result;
    }

    void giveBack(Ticket) noexcept {}

    /// Wakes every ticket that is out. False, told by lastError(), when the system refuses; the next call tries again.
    bool wake() {
        std::uint32_t epoch = epoch_.load();
        do {
            if ((epoch & ticketOut) == 0) return true;
        } while (!epoch_.compare_exchange_strong(epoch, epoch + 1));
        if (Kernel::wakeAll(epoch_)) return true;
        epoch_.fetch_or(ticketOut);
        return false;
    }

    bool idle() const { return true; }

private:
    static constexpr std::uint32_t ticketOut = 1;

    Counter epoch_{0};
};

}
