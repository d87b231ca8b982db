/// The kernel's futex: a word on which threads of this process sleep.
#pragma once

#include "orn/os/Status.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>

namespace ORN::os {

static_assert(sizeof(std::atomic<std::uint32_t>) == 4 && std::atomic<std::uint32_t>::is_always_lock_free);

/// The end of a wait, on a clock that nobody sets.
class Deadline {
public:
    /// So many milliseconds from now; with waitForever there is none.
    explicit Deadline(DWORD timeout) noexcept : limited_{timeout != waitForever} {
        if (!limited_) return;
        clock_gettime(CLOCK_MONOTONIC, &time_);
        time_.tv_sec += static_cast<std::time_t>(timeout / 1000);
        time_.tv_nsec += static_cast<long>(timeout % 1000) * 1'000'000;
        if (time_.tv_nsec >= 1'000'000'000) {
            time_.tv_nsec -= 1'000'000'000;
            ++time_.tv_sec;
        }
    }

    timespec const* time() const noexcept { return limited_ ? &time_ : nullptr; }

private:
    bool limited_;
    timespec time_{};
};

/// Sleeps while the word is `expected`, until a wake-up or the deadline. 0 also when there was no wake-up, so the caller
/// looks at the word and sleeps again; otherwise an errno, ETIMEDOUT after the deadline.
inline int futexWait(std::atomic<std::uint32_t>& word, std::uint32_t expected, Deadline const& deadline) noexcept {
    // This form of the wait takes a point in time, so a wait that is taken up again does not start anew.
    if (syscall(SYS_futex, &word, FUTEX_WAIT_BITSET_PRIVATE, expected, deadline.time(), nullptr,
                FUTEX_BITSET_MATCH_ANY) == 0)
        return 0;
    return errno == EAGAIN || errno == EINTR ? 0 : errno;
}

/// Wakes at most so many threads that sleep on the word. 0, or an errno.
inline int futexWake(std::atomic<std::uint32_t>& word, int threads) noexcept {
    return syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, threads, nullptr, nullptr, 0) >= 0 ? 0 : errno;
}

}
