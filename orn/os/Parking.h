/// The kernel's part in putting threads to sleep: a futex on Linux, a semaphore with a room beside it on Windows. What is
/// made of them for the locks stands in orn/threading/EpochParking.h and SemaphoreParking.h.
#pragma once

#include "orn/os/Status.h"
#include "orn/os/Types.h"

#include <atomic>
#include <cstdint>

namespace ORN::os {

/// Makes the load of the library fail, as it fails when a library's initialisation does. To be called while static objects
/// are built. A program that contains this code itself goes on.
void refuseLoading() noexcept;

#if defined(_WIN32)

/// An unnamed semaphore with initial count 0 and maximum 0x7FFFFFFF. It needs no start-up order: a use before create()
/// creates it.
class Semaphore {
public:
    constexpr Semaphore() noexcept = default;

    /// Each returns false when the system refuses; lastError() says why. A second create() does nothing.
    /// @{
    bool create() noexcept;
    bool release(std::uint32_t counts) noexcept;
    /// @}
    void close() noexcept;
    DWORD wait(DWORD timeout) noexcept;

private:
    std::atomic<HANDLE> handle_{nullptr};
};

/// A mutex and a condition variable of the system, neither of which has a kernel object of its own.
class Room {
public:
    constexpr Room() noexcept = default;

    void lock() noexcept;
    void unlock() noexcept;
    DWORD sleep(DWORD timeout) noexcept;  ///< unlocks, waits for wakeAll() and locks again
    void wakeAll() noexcept;

private:
    void* lock_ = nullptr;
    void* condition_ = nullptr;
};

struct ParkingKernel {
    static constexpr bool comparesWords = false;

    template <typename T>
    using Atomic = std::atomic<T>;
    using Semaphore = os::Semaphore;
    using Room = os::Room;
};

#else

struct ParkingKernel {
    static constexpr bool comparesWords = true;

    template <typename T>
    using Atomic = std::atomic<T>;

    /// Sleeps while the word is `expected`, at most `timeout` milliseconds on the steady clock. When the word differs it
    /// returns waitObject at once.
    static DWORD wait(std::atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) noexcept;

    /// Wakes every thread that sleeps on the word. False when the system refuses; lastError() says why.
    static bool wakeAll(std::atomic<std::uint32_t>& word) noexcept;
};

#endif

}
