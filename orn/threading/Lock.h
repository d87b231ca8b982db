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
/// A release wakes every thread parked on the word's slot, whatever lock it waits for; each looks at its own word and
/// waits again if it still cannot proceed. No thread stays asleep while its own word is free: before it reads the word for
/// the last time a thread takes a ticket, the number of its slot's latest release, and any later release ends its wait. On
/// Linux the wait itself compares the numbers, and each release wakes by itself. On Windows a wake-up is a count of the
/// slot's semaphore, which any of those who wait may take: one that has taken a count though nothing was released since
/// its ticket puts it back when another is owed one, and stays aside until that one has had it; a count may come from a
/// release that another thread has under way. Either way a thread is woken for nothing a bounded number of times for
/// each release, however the system schedules. The order of the steps is the same: announce, read, wait, read, withdraw,
/// swap; and for a release: swap, look for waiters, wake.
///
/// Not fair: whoever swaps first after a wake-up proceeds, and a stream of shared holders can keep an exclusive acquirer
/// waiting without end. Not re-entrant: a thread that holds a word exclusively and acquires it again, in either mode, waits
/// for ever, and so does one that holds it shared and acquires it exclusively. Acquiring shared what one holds shared
/// already works.
///
/// A time limit bounds each single wait and not the call: every wake-up that finds the lock taken starts a new one.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

inline constexpr LONG readWriteLockExclusive = 0x10000000;  ///< what an exclusive holder adds to the word
inline constexpr LONG readWriteLockShared = 1;              ///< what a shared holder adds to the word
inline constexpr LONG readWriteLockAnyHolder = -1;  ///< an exclusive acquirer waits while one of these bits is set
inline constexpr LONG readWriteLockWriter = static_cast<LONG>(0xF0000000u);  ///< and a shared one for these
inline constexpr DWORD readWriteLockInfinite = 0xFFFFFFFF;                   ///< no time limit

static_assert(sizeof(LONG) == 4 && sizeof(DWORD) == 4);
static_assert((readWriteLockExclusive & readWriteLockWriter) == readWriteLockExclusive);

// What debug heaps and stacks write into memory that is not, or no longer, in use: a lock there makes everyone wait.
static_assert((static_cast<LONG>(0xDDDDDDDDu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xFEEEFEEEu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xCDCDCDCDu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xCCCCCCCCu) & readWriteLockWriter) != 0);
static_assert((static_cast<LONG>(0xFDFDFDFDu) & readWriteLockWriter) != 0);

/// Waits while the word has a bit of `waitMask`, then adds `add` to it. True when acquired; false when a wait lasted
/// `timeout` milliseconds, with the word untouched. Throws WinError when the system cannot wait, or has no memory for what
/// the first wait on a slot needs; the lock is then not held.
[[nodiscard]] ORN_API bool readWriteLockLock(LONG volatile& word, LONG add, LONG waitMask, DWORD timeout);

/// Releases what was acquired with the same `add`; any other use is not detected and corrupts the word. Throws WinError
/// when the system cannot wake the waiting threads; the lock is then released all the same, and the slot's next release
/// wakes them.
ORN_API void readWriteLockUnlock(LONG volatile& word, LONG add);

/// Holds a word for a scope; the word must outlive the guard. A guard belongs to one thread and is not copied. Where the
/// system cannot wake those who wait, unlock() throws, and the destructor with it; when an exception is on its way already
/// that ends the process.
template <LONG Add, LONG WaitMask>
class [[nodiscard]] ReadWriteLock {
public:
    [[nodiscard]] explicit ReadWriteLock(LONG volatile& word) : word_{&word} {
        lock();
    }                                               ///< acquires, without a time limit
    ~ReadWriteLock() noexcept(false) { unlock(); }  ///< releases, if held
    ReadWriteLock(ReadWriteLock const&) = delete;
    ReadWriteLock& operator=(ReadWriteLock const&) = delete;

    /// Steps back in; nothing when held already.
    void lock() {
        if (!held_) held_ = readWriteLockLock(*word_, Add, WaitMask, readWriteLockInfinite);
    }

    /// Steps out; nothing when not held.
    void unlock() {
        if (!held_) return;
        held_ = false;
        readWriteLockUnlock(*word_, Add);
    }

private:
    LONG volatile* word_;
    bool held_ = false;
};

/// Alone in the lock: for those who change what it protects.
using ExclusiveLock = ReadWriteLock<readWriteLockExclusive, readWriteLockAnyHolder>;

/// Together with other shared holders: for those who read.
using SharedLock = ReadWriteLock<readWriteLockShared, readWriteLockWriter>;

/// A lock word as the standard library's guards take it: std::unique_lock, std::shared_lock, and std::scoped_lock for
/// several at once, which waits for them in an order that cannot deadlock. The word must outlive it; any number of these
/// may stand for one word.
///
///     LockableWord from{one.word}, to{other.word};
///     std::scoped_lock const both{from, to};
class LockableWord {
public:
    explicit LockableWord(LONG volatile& word) noexcept : word_{&word} {}  ///< acquires nothing

    /// Alone, and together with other readers. Each try gives up at once where it would have to wait.
    /// @{
    void lock() { acquire(readWriteLockExclusive, readWriteLockAnyHolder, readWriteLockInfinite); }
    [[nodiscard]] bool try_lock() { return acquire(readWriteLockExclusive, readWriteLockAnyHolder, 0); }
    void unlock() { readWriteLockUnlock(*word_, readWriteLockExclusive); }
    void lock_shared() { acquire(readWriteLockShared, readWriteLockWriter, readWriteLockInfinite); }
    [[nodiscard]] bool try_lock_shared() { return acquire(readWriteLockShared, readWriteLockWriter, 0); }
    void unlock_shared() { readWriteLockUnlock(*word_, readWriteLockShared); }
    /// @}

private:
    bool acquire(LONG add, LONG waitMask, DWORD timeout) { return readWriteLockLock(*word_, add, waitMask, timeout); }

    LONG volatile* word_;
};
