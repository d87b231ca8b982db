/// The one-word reader-writer lock. A lock is a 32-bit word in the object it protects, 0 when free; it needs no set-up
/// beyond that and no tear-down. Threads that must wait are parked on one of 32 process-wide slots, chosen by the word's
/// address.
///
/// The word:
///
///   | bits     |                                                              |
///   |----------|--------------------------------------------------------------|
///   | 0 to 27  | how many hold it shared                                      |
///   | 28 to 31 | 0001 while one holds it exclusively, otherwise 0000          |
///
/// What an operation does, by the state in which it finds the word:
///
///   |                   | free            | n shared           | exclusive         |
///   |-------------------|-----------------|--------------------|-------------------|
///   | acquire shared    | 1 shared        | n + 1 shared       | waits             |
///   | acquire exclusive | exclusive       | waits until free   | waits until free  |
///   | release shared    | not detected, corrupts | n - 1 shared, wakes the slot | not detected, corrupts |
///   | release exclusive | not detected, corrupts | not detected, corrupts | free, wakes the slot |
///
/// A release wakes every thread that is parked on the word's slot, also threads that wait for other words. Each of them
/// reads its own word and waits again if it still cannot proceed.
///
/// No thread stays asleep while its own word is free. Before a thread reads the word for the last time, it takes a ticket:
/// the number of its slot's latest release. Any later release ends its wait. On Linux the kernel compares the numbers when
/// the thread goes to sleep, and each release wakes by itself. On Windows a release adds counts to the slot's semaphore,
/// and any waiting thread may take a count. If nothing was released since the ticket of the thread that took it, the count
/// belongs to another thread: the first one puts it back and stays aside until the other has had its count. In either
/// case each release wakes a thread for nothing a bounded number of times, however the system schedules. The steps come
/// in the same order everywhere: announce, read, wait, read, withdraw, swap; and for a release: swap, look for waiters,
/// wake.
///
/// The lock is not fair: the thread that swaps first after a wake-up proceeds, and a stream of shared holders can keep an
/// exclusive acquirer waiting without end. It is not re-entrant: a thread that holds a word exclusively and acquires it
/// again in either mode waits for ever, and so does a thread that holds it shared and acquires it exclusively. A thread
/// that holds a word shared may acquire it shared again.
///
/// A time limit bounds each single wait and not the call: every wake-up that finds the lock taken starts a new wait.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <atomic>

/// What a holder adds to the word.
/// @{
inline constexpr LONG readWriteLockExclusive = 0x10000000;
inline constexpr LONG readWriteLockShared = 1;
/// @}

/// An acquirer waits while one of these bits of the word is set: an exclusive acquirer for any holder, a shared one for a
/// writer.
/// @{
inline constexpr LONG readWriteLockAnyHolder = -1;
inline constexpr LONG readWriteLockWriter = static_cast<LONG>(0xF0000000u);
/// @}

/// A time limit in milliseconds that never ends.
inline constexpr DWORD readWriteLockInfinite = 0xFFFFFFFF;

static_assert(sizeof(LONG) == 4 && sizeof(DWORD) == 4);
static_assert((readWriteLockExclusive & readWriteLockWriter) == readWriteLockExclusive);

// What debug heaps and stacks write into memory that is not, or no longer, in use: a lock there makes everyone wait.
static_assert((static_cast<LONG>(0xDDDDDDDDu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xFEEEFEEEu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xCDCDCDCDu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xCCCCCCCCu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xFDFDFDFDu) & readWriteLockWriter) != 0);

/// Waits while the word has a bit of `waitMask`, then adds `add` to it. True when the lock is acquired; false when a wait
/// lasted `timeout` milliseconds, with the word untouched. Throws WinError when the system cannot wait, or has no memory for
/// the first wait on a slot; the lock is then not held.
[[nodiscard]] ORN_API bool readWriteLockLock(LONG volatile& word, LONG add, LONG waitMask, DWORD timeout);

/// Releases a lock that was acquired with the same `add`; any other use is not detected and corrupts the word. Throws
/// WinError when the system cannot wake the waiting threads; the lock is released all the same, and the slot's next
/// release wakes them.
ORN_API void readWriteLockUnlock(LONG volatile& word, LONG add);

namespace ORN::Threading {

/// A lock word as an atomic number; its operations are sequentially consistent.
class LockWord {
public:
    explicit LockWord(LONG volatile& word) noexcept : word_{const_cast<LONG&>(word)} {}  ///< the word outlives it

    LONG read() const noexcept { return word_.load(); }  ///< what the word holds

    /// Compare-and-swap: false when the word did not hold `seen`, which is then what it holds.
    bool swap(LONG& seen, LONG next) noexcept { return word_.compare_exchange_strong(seen, next); }

private:
    static_assert(std::atomic_ref<LONG>::is_always_lock_free);
    static_assert(std::atomic_ref<LONG>::required_alignment == alignof(LONG));

    std::atomic_ref<LONG> word_;
};

/// Acquires without waiting, by one read and one swap. False when the word is taken, or another thread changed it between
/// the two; `seen` is then what it holds.
template <typename Word>
bool acquireAtOnce(Word word, LONG& seen, LONG add, LONG waitMask) {
    seen = word.read();
    return (seen & waitMask) == 0 && word.swap(seen, seen + add);
}

/// readWriteLockLock, with the first attempt inline.
[[nodiscard]] inline bool acquireInline(LONG volatile& word, LONG add, LONG waitMask, DWORD timeout) {
    LONG seen;
    return acquireAtOnce(LockWord{word}, seen, add, waitMask) || readWriteLockLock(word, add, waitMask, timeout);
}

}

/// Holds a word for a scope; the word must outlive the guard. A guard belongs to one thread and is not copied. When the
/// system cannot wake the waiting threads, unlock() throws, and so does the destructor; if another exception is being
/// thrown at that time, the process ends.
template <LONG Add, LONG WaitMask>
class [[nodiscard]] ReadWriteLock {
public:
    /// Acquires, without a time limit.
    [[nodiscard]] explicit ReadWriteLock(LONG volatile& word) : word_{&word} { lock(); }
    ~ReadWriteLock() noexcept(false) { unlock(); }  ///< releases, if held
    ReadWriteLock(ReadWriteLock const&) = delete;
    ReadWriteLock& operator=(ReadWriteLock const&) = delete;

    /// Acquires again after unlock(). Does nothing when the lock is held already.
    void lock() {
        if (!held_) held_ = ORN::Threading::acquireInline(*word_, Add, WaitMask, readWriteLockInfinite);
    }

    /// Releases before the end of the scope. Does nothing when the lock is not held.
    void unlock() {
        if (!held_) return;
        held_ = false;
        readWriteLockUnlock(*word_, Add);
    }

private:
    LONG volatile* word_;
    bool held_ = false;
};

/// Holds the lock alone: for code that changes what the lock protects.
using ExclusiveLock = ReadWriteLock<readWriteLockExclusive, readWriteLockAnyHolder>;

/// Holds the lock together with other readers: for code that only reads.
using SharedLock = ReadWriteLock<readWriteLockShared, readWriteLockWriter>;

/// A lock word in the form that the standard library's guards take: std::unique_lock, std::shared_lock, and
/// std::scoped_lock, which acquires several words without a deadlock. The word must outlive it. Any number of these may
/// stand for one word.
///
///     LockableWord from{one.word}, to{other.word};
///     std::scoped_lock const both{from, to};
class LockableWord {
public:
    explicit LockableWord(LONG volatile& word) noexcept : word_{&word} {}  ///< acquires nothing

    /// Exclusive, and shared with other readers. A try that would have to wait returns false at once.
    /// @{
    void lock() { acquire(readWriteLockExclusive, readWriteLockAnyHolder, readWriteLockInfinite); }
    [[nodiscard]] bool try_lock() { return acquire(readWriteLockExclusive, readWriteLockAnyHolder, 0); }
    void unlock() { readWriteLockUnlock(*word_, readWriteLockExclusive); }
    void lock_shared() { acquire(readWriteLockShared, readWriteLockWriter, readWriteLockInfinite); }
    [[nodiscard]] bool try_lock_shared() { return acquire(readWriteLockShared, readWriteLockWriter, 0); }
    void unlock_shared() { readWriteLockUnlock(*word_, readWriteLockShared); }
    /// @}

private:
    bool acquire(LONG add, LONG waitMask, DWORD timeout) {
        return ORN::Threading::acquireInline(*word_, add, waitMask, timeout);
    }

    LONG volatile* word_;
};
