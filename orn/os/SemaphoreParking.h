/// Where the threads of one slot of the parking table sleep, over a counting semaphore.
///
/// A semaphore alone loses wake-ups here. A count is released for every waiting thread, but a woken thread that still
/// cannot proceed waits again and may take the count of a neighbour, which then sleeps although its lock is free. So the
/// slot keeps a ledger beside the semaphore, one word with three numbers:
///
///   | bits     |         |                                                                             |
///   |----------|---------|-----------------------------------------------------------------------------|
///   | 0 to 19  | present | threads that hold a ticket                                                  |
///   | 20 to 39 | owed    | those of them for whom a count was released and who have not had it yet     |
///   | 40 to 63 | epoch   | moved on by every release that comes to owe somebody a count; a ticket is the epoch of its taking |
///
/// A release moves the epoch on, which makes every ticket that is out an old one, and releases a count for each thread
/// present that is not owed one already. A thread with an old ticket is owed a count; one with a ticket of this epoch is
/// not. Whoever has taken a count therefore knows whose it was:
///
///   | ticket | owed | the count was                | the thread                                       |
///   |--------|------|------------------------------|--------------------------------------------------|
///   | old    | any  | its own                      | is owed no more and takes a new ticket           |
///   | new    | > 0  | that of another thread       | puts the count back                              |
///   | new    | 0    | left by one that went away   | keeps it                                         |
///
/// At every moment the counts in the semaphore, in the hands of threads that have not yet looked at the ledger and in the
/// hands of releasers on their way are no fewer than the threads owed one, so none of those sleeps for good. Putting back
/// does not go round for ever: the semaphore serves threads that wait before threads that come, so a count that is put
/// back goes to the thread it is owed to, once that thread waits; and while nobody is owed one, none is put back.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>

namespace ORN::os {

/// Kernel names the atomic types and the semaphore, so that a test can drive every step. Fewer than 2^20 threads may hold
/// a ticket at one time; a ticket is mistaken for a new one only if its holder stands still for a multiple of 2^24 epochs.
template <typename Kernel>
class SemaphoreParking {
public:
    using Counter = typename Kernel::template Atomic<std::uint32_t>;
    using Ticket = std::uint64_t;

    constexpr SemaphoreParking() noexcept = default;

    bool create() noexcept { return semaphore_.create(); }
    void close() noexcept { semaphore_.close(); }

    Ticket takeTicket() { return epochOf(ledger_.fetch_add(onePresent)); }

    /// Waits for the semaphore, at most `timeout` milliseconds (0xFFFFFFFF: no limit). 0 after a wake-up, which need not
    /// have been this thread's, 258 when the time is over, anything else is a failure, told by lastError().
    DWORD sleep(Ticket& ticket, DWORD timeout) {
        DWORD const result = semaphore_.wait(timeout);
        if (result != 0) return result;

        std::uint64_t ledger = ledger_.load();
        while (epochOf(ledger) != ticket) {
            if (ledger_.compare_exchange_strong(ledger, ledger - oneOwed)) {
                ticket = epochOf(ledger);
                return 0;
            }
        }
        if (owedOf(ledger) == 0 || release(1)) return 0;
        return failed;
    }

    /// The thread goes away. A count that it is owed is taken along where it is there already; otherwise it stays in the
    /// semaphore and wakes somebody once for nothing.
    void giveBack(Ticket ticket) {
        std::uint64_t ledger = ledger_.load();
        bool taken = false;
        for (;;) {
            bool const owed = epochOf(ledger) != ticket;
            if (owed && !taken) taken = semaphore_.wait(0) == 0;
            if (ledger_.compare_exchange_strong(ledger, ledger - onePresent - (owed ? oneOwed : 0))) return;
        }
    }

    /// Wakes every ticket that is out. False, told by lastError(), when the system refuses; the next call tries again.
    bool wake() {
        std::uint64_t ledger = ledger_.load();
        std::uint64_t fresh = 0;
        do {
            fresh = presentOf(ledger) - owedOf(ledger);
        } while (fresh != 0 && !ledger_.compare_exchange_strong(ledger, ledger + oneEpoch + fresh * oneOwed));

        std::uint32_t counts = static_cast<std::uint32_t>(fresh);
        if (withheld_.load() != 0) counts += withheld_.exchange(0);
        return counts == 0 || release(counts);
    }

    /// Nobody holds a ticket, and nobody is owed a count.
    bool idle() const {
        std::uint64_t const ledger = ledger_.load();
        return presentOf(ledger) == 0 && owedOf(ledger) == 0;
    }

private:
    static constexpr int width = 20;
    static constexpr std::uint64_t onePresent = 1;
    static constexpr std::uint64_t oneOwed = onePresent << width;
    static constexpr std::uint64_t oneEpoch = oneOwed << width;
    static constexpr DWORD failed = 0xFFFFFFFF;

    static constexpr std::uint64_t presentOf(std::uint64_t ledger) noexcept { return ledger % oneOwed; }
    static constexpr std::uint64_t owedOf(std::uint64_t ledger) noexcept { return ledger % oneEpoch / oneOwed; }
    static constexpr std::uint64_t epochOf(std::uint64_t ledger) noexcept { return ledger / oneEpoch; }

    // What the system refuses to release stays owed, and goes out with the next release.
    bool release(std::uint32_t counts) {
        if (semaphore_.release(counts)) return true;
        withheld_.fetch_add(counts);
        return false;
    }

    typename Kernel::template Atomic<std::uint64_t> ledger_{0};
    Counter withheld_{0};
    typename Kernel::Semaphore semaphore_{};
};

}
