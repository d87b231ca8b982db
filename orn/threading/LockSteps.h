/// The algorithm of the one-word reader-writer lock. It is a template over its word and its parking slot, so that a
/// test can drive it step by step. Each step is one call on the word or on the slot.
///
/// It loses no wake-up for this reason: a thread announces itself and takes its ticket before it reads the word for the
/// last time, and a releaser changes the word before it looks for announced threads. So either the thread reads the
/// changed word, or the releaser sees the thread and makes its ticket an old one.
#pragma once

#include "orn/foundation/Error.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Status.h"
#include "orn/threading/Lock.h"

namespace ORN::Threading {

/// A slot of the parking table: the number of threads that wait here or are about to, and the object they sleep on.
template <typename Parking>
class ParkingSlot {
public:
    using Ticket = typename Parking::Ticket;

    constexpr ParkingSlot() noexcept = default;

    Ticket announce() {
        waiters_.fetch_add(1);
        return parking_.takeTicket();
    }
    DWORD sleep(Ticket& ticket, DWORD timeout) { return parking_.sleep(ticket, timeout); }
    void retire(Ticket ticket) {
        parking_.giveBack(ticket);
        waiters_.fetch_sub(1);
    }

    auto waiters() const { return waiters_.load(); }
    bool wake() { return parking_.wake(); }

    Parking& parking() noexcept { return parking_; }

private:
    typename Parking::Counter waiters_{0};
    Parking parking_{};
};

/// Waits until `seen`, what the word holds, has no bit of the mask. False when a wait timed out.
template <typename Word, typename Slot>
bool waitFor(Word& word, Slot& slot, LONG& seen, LONG waitMask, DWORD timeout) {
    auto ticket = slot.announce();
    seen = word.read();
    while ((seen & waitMask) != 0) {
        DWORD const result = slot.sleep(ticket, timeout);
        if (result != os::waitObject) {
            DWORD const error = os::lastError();
            slot.retire(ticket);
            if (result == os::waitTimedOut) return false;
            throw WinError{error};
        }
        seen = word.read();
    }
    slot.retire(ticket);
    return true;
}

/// Acquires, waiting where it must. `seen` is what the word held a moment ago; a failed swap is also the next read.
template <typename Word, typename Slot>
[[gnu::noinline, gnu::cold]] bool acquireTaken(Word word, Slot& slot, LONG seen, LONG add, LONG waitMask,
                                               DWORD timeout) {
    do {
        if ((seen & waitMask) != 0 && !waitFor(word, slot, seen, waitMask, timeout)) return false;
    } while (!word.swap(seen, seen + add));
    return true;
}

template <typename Word, typename Slot>
bool acquire(Word word, Slot& slot, LONG add, LONG waitMask, DWORD timeout) {
    LONG seen;
    if (acquireAtOnce(word, seen, add, waitMask)) [[likely]]
        return true;
    return acquireTaken(word, slot, seen, add, waitMask, timeout);
}

template <typename Slot>
[[gnu::noinline, gnu::cold]] void wakeAll(Slot& slot) {
    if (!slot.wake()) throw WinError{};
}

template <typename Word, typename Slot>
void release(Word word, Slot& slot, LONG add) {
    LONG seen = word.read();
    while (!word.swap(seen, seen - add)) {}
    if (slot.waiters() != 0) [[unlikely]]
        wakeAll(slot);
}

}
