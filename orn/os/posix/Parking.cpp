#include "orn/os/Parking.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <cerrno>
#include <climits>
#include <ctime>

namespace ORN::os {

namespace {

constexpr DWORD errorInvalidHandle = 6;
constexpr DWORD errorNotSupported = 50;
constexpr DWORD errorInvalidParameter = 87;

static_assert(sizeof(std::atomic<std::uint32_t>) == 4 && std::atomic<std::uint32_t>::is_always_lock_free);

long futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value, timespec const* deadline) noexcept {
    return syscall(SYS_futex, &word, operation | FUTEX_PRIVATE_FLAG, value, deadline, nullptr, FUTEX_BITSET_MATCH_ANY);
}

timespec after(DWORD milliseconds) noexcept {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    time.tv_sec += static_cast<time_t>(milliseconds / 1000);
    time.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (time.tv_nsec >= 1'000'000'000) {
        time.tv_nsec -= 1'000'000'000;
        ++time.tv_sec;
    }
    return time;
}

void setLastErrorOf(int error) noexcept { setLastError(error == ENOSYS ? errorNotSupported : errorInvalidParameter); }

}

DWORD FutexKernel::wait(std::atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) noexcept {
    if (ORN_OS_REFUSED("parkingWait")) {
        setLastError(errorInvalidHandle);
        return waitFailed;
    }
    timespec const deadline = timeout != infinite ? after(timeout) : timespec{};
    while (word.load() == expected) {
        if (futex(word, FUTEX_WAIT_BITSET, expected, timeout != infinite ? &deadline : nullptr) == 0) continue;
        int const error = errno;
        if (error == ETIMEDOUT) return waitTimeout;
        if (error != EAGAIN && error != EINTR) {
            setLastErrorOf(error);
            return waitFailed;
        }
    }
    return waitObject;
}

void refuseLoading() noexcept {}  // a futex needs nothing to be made

bool FutexKernel::wakeAll(std::atomic<std::uint32_t>& word) noexcept {
    if (ORN_OS_REFUSED("parkingWake")) {
        setLastError(errorInvalidHandle);
        return false;
    }
    if (futex(word, FUTEX_WAKE, INT_MAX, nullptr) >= 0) return true;
    setLastErrorOf(errno);
    return false;
}

}
