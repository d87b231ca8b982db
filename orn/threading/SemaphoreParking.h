/// The sleep of the threads of one parking slot, over a counting semaphore.
///
/// A semaphore alone loses wake-ups here. A release adds a count for every waiting thread, but a woken thread that
/// still cannot proceed waits again and may take the count of a neighbour. The neighbour then sleeps although its lock
/// is free. So the slot keeps a ledger beside the semaphore, one word with three numbers:
///
///   | bits     |         |                                                                             |
///   |----------|---------|-----------------------------------------------------------------------------|
///   | 0 to 19  | present | threads that hold a ticket                                                  |
///   | 20 to 39 | owed    | those of them for whom a count was released and who have not had it yet     |
///   | 40 to 63 | epoch   | moved on by every release that owes a new count; a ticket is the epoch of its taking |
///
/// A release moves the epoch on, which makes every ticket an old one, and adds a count for each thread present that is
/// not owed one already. A thread with an old ticket is owed a count; a thread with a ticket of this epoch is not. A
/// thread that has taken a count therefore knows to which thread it belongs:
///
///   | ticket | owed | the count was                | the thread                                       |
///   |--------|------|------------------------------|--------------------------------------------------|
///   | old    | any  | its own                      | is owed no more and takes a new ticket           |
///   | new    | > 0  | that of another thread       | puts the count back and steps aside              |
///   | new    | 0    | left by one that went away   | keeps it                                         |
///
/// At every moment the counts in the semaphore, in the hands of threads that have not yet looked at the ledger and in
/// the hands of releasers on their way are no fewer than the threads owed one, so none of those sleeps for good.
///
/// A thread that has put a count back must not take it again: the thread to which it is owed may stand still on its way
/// to the semaphore, and the first thread would take and put back without end. So it waits aside, on a condition of the
/// ledger, until its ticket is an old one or no thread is owed a count. While a ticket is new the number of threads
/// owed only falls, so a thread puts back at most one count for each ticket, however the system schedules.
#pragma once

#include "orn/os/Status.h"

#include <cstdint>

namespace ORN::Threading {

/// Kernel gives the atomic types, the semaphore and the room aside, so that a test can drive every step. Fewer than
/// 2^20 threads may hold a ticket at one time. A ticket is mistaken for a new one only if its holder stands still for a
/// multiple of 2^24 epochs.
template <typename Kernel>
class SemaphoreParking {
public:
    using Counter = typename Kernel::template Atomic<std::uint32_t>;
    using Ticket = std::uint64_t;

    constexpr SemaphoreParking() noexcept = default;

    bool create() noexcept { return semaphore_.create(); }
    void close() noexcept { semaphore_.close(); }

    Ticket takeTicket() { return epochOf(ledger_.fetch_add(onePresent)); }

    /// Waits for the semaphore, at most `timeout` milliseconds at a time. waitObject after a wake-up, which need not
    /// have been meant for this thread; the other results are waitTimedOut and waitFailed.
    DWORD sleep(Ticket& ticket, DWORD timeout) {
        for (;;) {
            if (DWORD const result = semaphore_.wait(timeout); result != os::waitObject) return result;
            std::uint64_t ledger = ledger_.load();
            if (settle(ticket, ledger) || owedOf(ledger) == 0) return os::waitObject;
            if (!release(1)) return os::waitFailed;
            if (DWORD const result = stepAside(ticket, timeout); result != os::waitObject) return result;
            if (ledger = ledger_.load(); epochOf(ledger) == ticket) continue;
            semaphore_.wait(0);  // takes the thread's own count, if the semaphore has it already
            settle(ticket, ledger);
            return os::waitObject;
        }
    }

    /// Ends the thread's wait. If the thread is owed a count and the semaphore has one, it is taken; otherwise the
    /// count stays in the semaphore and wakes another thread once for nothing.
    void giveBack(Ticket ticket) {
        std::uint64_t ledger = ledger_.load();
        bool taken = false, owed = false;
        do {
            owed = epochOf(ledger) != ticket;
            if (owed && !taken) taken = semaphore_.wait(0) == os::waitObject;
        } while (!ledger_.compare_exchange_strong(ledger, ledger - onePresent - (owed ? oneOwed : 0)));
        if (owed && owedOf(ledger) == 1) tellAside();
    }

    /// Ends the wait of every ticket. False when the system refuses, with the reason in lastError(); the next call
    /// tries again.
    bool wake() {
        std::uint64_t ledger = ledger_.load();
        std::uint64_t fresh = 0;
        do {
            fresh = presentOf(ledger) - owedOf(ledger);
        } while (fresh != 0 && !ledger_.compare_exchange_strong(ledger, ledger + oneEpoch + fresh * oneOwed));

        std::uint32_t counts = static_cast<std::uint32_t>(fresh);
        if (withheld_.load() != 0) counts += withheld_.exchange(0);
        bool const released = counts == 0 || release(counts);
        if (fresh != 0) tellAside();
        return released;
    }

    /// Whether no thread holds a ticket, and none is owed a count.
    bool idle() const {
        std::uint64_t const ledger = ledger_.load();
        return presentOf(ledger) == 0 && owedOf(ledger) == 0;
    }

private:
    static constexpr int width = 20;
    static constexpr std::uint64_t onePresent = 1;
    static constexpr std::uint64_t oneOwed = onePresent << width;
    static constexpr std::uint64_t oneEpoch = oneOwed << width;

    static constexpr std::uint64_t presentOf(std::uint64_t ledger) noexcept { return ledger % oneOwed; }
    static constexpr std::uint64_t owedOf(std::uint64_t ledger) noexcept { return ledger % oneEpoch / oneOwed; }
    static constexpr std::uint64_t epochOf(std::uint64_t ledger) noexcept { return ledger / oneEpoch; }

    /// The thread has taken a count. True when its ticket was an old one: it was owed the count, and now has a new
    /// ticket.
    bool settle(Ticket& ticket, std::uint64_t& ledger) {
        do {
            if (epochOf(ledger) == ticket) return false;
        } while (!ledger_.compare_exchange_strong(ledger, ledger - oneOwed));
        ticket = epochOf(ledger);
        if (owedOf(ledger) == 1) tellAside();
        return true;
    }

    /// Waits until the ticket is an old one, or no thread is owed a count.
    DWORD stepAside(Ticket ticket, DWORD timeout) {
        aside_.fetch_add(1);
        room_.lock();
        DWORD result = os::waitObject;
        while (result == os::waitObject) {
            std::uint64_t const ledger = ledger_.load();
            if (epochOf(ledger) != ticket || owedOf(ledger) == 0) break;
            result = room_.sleep(timeout);
        }
        room_.unlock();
        aside_.fetch_sub(1);
        return result;
    }

    // A thread aside has counted itself before it reads the ledger, and it reads inside the room's lock.
    void tellAside() {
        if (aside_.load() == 0) return;
        room_.lock();
        room_.unlock();
        room_.wakeAll();
    }

    // Counts that the system refuses to add stay owed, and are added with the next release.
    bool release(std::uint32_t counts) {
        if (semaphore_.release(counts)) return true;
        withheld_.fetch_add(counts);
        return false;
    }

    typename Kernel::template Atomic<std::uint64_t> ledger_{0};
    Counter withheld_{0};
    typename Kernel::Semaphore semaphore_{};
    Counter aside_{0};
    typename Kernel::Room room_{};
};

}
