#include "orn/os/Parking.h"

#include "orn/os/Fault.h"

#include <windows.h>

namespace ORN::os {

namespace {

// The value is there before any constructor runs, because one of another file may call refuseLoading().
constinit bool loads = true;

}

void refuseLoading() noexcept { loads = false; }

bool Semaphore::create() noexcept {
    if (handle_.load() != nullptr) return true;
    if (ORN_OS_REFUSED("parkingCreate")) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    HANDLE const made = CreateSemaphoreW(nullptr, 0, 0x7FFFFFFF, nullptr);
    if (made == nullptr) return false;
    // Another thread may have made one meanwhile. All threads of the slot must wait on the same.
    HANDLE none = nullptr;
    if (!handle_.compare_exchange_strong(none, made)) CloseHandle(made);
    return true;
}

void Semaphore::close() noexcept {
    if (HANDLE const handle = handle_.exchange(nullptr); handle != nullptr) CloseHandle(handle);
}

DWORD Semaphore::wait(DWORD timeout) noexcept {
    if (!create()) return waitFailed;
    // A wait of 0 only takes a count that is there already. Tests refuse the waits that may sleep.
    if (timeout != 0 && ORN_OS_REFUSED("parkingWait")) {
        SetLastError(ERROR_INVALID_HANDLE);
        return waitFailed;
    }
    return WaitForSingleObject(handle_.load(), timeout);
}

bool Semaphore::release(std::uint32_t counts) noexcept {
    if (!create()) return false;
    if (ORN_OS_REFUSED("parkingWake")) {
        SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    // The system adds all counts or none.
    return ReleaseSemaphore(handle_.load(), static_cast<LONG>(counts), nullptr) != FALSE;
}

namespace {

static_assert(sizeof(SRWLOCK) == sizeof(void*) && sizeof(CONDITION_VARIABLE) == sizeof(void*));  // null: as initialised

SRWLOCK* asLock(void*& word) noexcept { return reinterpret_cast<SRWLOCK*>(&word); }
CONDITION_VARIABLE* asCondition(void*& word) noexcept { return reinterpret_cast<CONDITION_VARIABLE*>(&word); }

}

void Room::lock() noexcept { AcquireSRWLockExclusive(asLock(lock_)); }
void Room::unlock() noexcept { ReleaseSRWLockExclusive(asLock(lock_)); }
void Room::wakeAll() noexcept { WakeAllConditionVariable(asCondition(condition_)); }

DWORD Room::sleep(DWORD timeout) noexcept {
    // The last argument says that the lock is held exclusively. The call may also return without a wake-up, so callers
    // look at their condition again.
    if (SleepConditionVariableSRW(asCondition(condition_), asLock(lock_), timeout, 0)) return waitObject;
    return GetLastError() == ERROR_TIMEOUT ? waitTimedOut : waitFailed;
}

}

// The runtime calls it when all static objects of the library have been built.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    return reason != DLL_PROCESS_ATTACH || ORN::os::loads ? TRUE : FALSE;
}
