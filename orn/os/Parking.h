/// What a slot of the parking table makes threads sleep on: the system's semaphore on Windows, a futex on Linux.
#pragma once

#include "orn/os/Types.h"

#include <atomic>
#include <cstdint>

#if defined(_WIN32)
#include "orn/os/SemaphoreParking.h"
#else
#include "orn/os/EpochParking.h"
#endif

namespace ORN::os {

inline constexpr DWORD waitObject = 0;           ///< a wait ended because it was woken
inline constexpr DWORD waitTimeout = 258;        ///< a wait ended because its time was over
inline constexpr DWORD waitFailed = 0xFFFFFFFF;  ///< a wait failed; lastError() says why
inline constexpr DWORD infinite = 0xFFFFFFFF;    ///< the time limit that is none

/// Called while the library is being loaded: the load fails then, as that of a library whose initialisation fails does. A
/// program that holds this code itself goes on.
void refuseLoading() noexcept;

#if defined(_WIN32)

/// An unnamed semaphore with initial count 0 and maximum 0x7FFFFFFF. It needs no start-up order: a use before create()
/// creates it.
class Semaphore {
public:
    constexpr Semaphore() noexcept = default;

    bool create() noexcept;  ///< once; false, told by lastError(), when refused
    void close() noexcept;
    DWORD wait(DWORD timeout) noexcept;           ///< waitObject, waitTimeout or waitFailed
    bool release(std::uint32_t counts) noexcept;  ///< false, told by lastError(), when refused

private:
    std::atomic<HANDLE> handle_{nullptr};
};

/// A lock and a condition of the system's, with no kernel object of their own.
class Room {
public:
    constexpr Room() noexcept = default;

    void lock() noexcept;
    void unlock() noexcept;
    DWORD sleep(DWORD timeout) noexcept;  ///< outside the lock, until wakeAll(): waitObject, waitTimeout or waitFailed
    void wakeAll() noexcept;

private:
    void* lock_ = nullptr;
    void* condition_ = nullptr;
};

struct SemaphoreKernel {
    template <typename T>
    using Atomic = std::atomic<T>;
    using Semaphore = os::Semaphore;
    using Room = os::Room;
};

using Parking = SemaphoreParking<SemaphoreKernel>;

#else

struct FutexKernel {
    template <typename T>
    using Atomic = std::atomic<T>;

    /// Sleeps while the word is `expected`, at most `timeout` milliseconds by the steady clock; a word that differs is
    /// waitObject at once.
    static DWORD wait(std::atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) noexcept;
    static bool wakeAll(std::atomic<std::uint32_t>& word) noexcept;
};

using Parking = EpochParking<FutexKernel>;

#endif

}
