#include "orn/os/Parking.h"

#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/posix/Futex.h"

#include <climits>

namespace ORN::os {

namespace {

// ENOSYS: the kernel has no futexes, or a filter of system calls keeps them from this process.
void setLastErrorOf(int error) noexcept { setLastError(error == ENOSYS ? errorNotSupported : errorInvalidParameter); }

}

DWORD ParkingKernel::wait(std::atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) noexcept {
    if (ORN_OS_REFUSED("parkingWait")) {
        setLastError(errorInvalidHandle);
        return waitFailed;
    }
    // One deadline for all of its sleeps: otherwise a wake-up for no reason would start the time limit anew.
    Deadline const deadline{timeout};
    while (word.load() == expected) {
        int const error = futexWait(word, expected, deadline);
        if (error == ETIMEDOUT) return waitTimedOut;
        if (error != 0) {
            setLastErrorOf(error);
            return waitFailed;
        }
    }
    return waitObject;
}

void refuseLoading() noexcept {}  // nothing has to be made for a futex, so nothing is ever refused

bool ParkingKernel::wakeAll(std::atomic<std::uint32_t>& word) noexcept {
    if (ORN_OS_REFUSED("parkingWake")) {
        setLastError(errorInvalidHandle);
        return false;
    }
    int const error = futexWake(word, INT_MAX);
    if (error != 0) setLastErrorOf(error);
    return error == 0;
}

}
