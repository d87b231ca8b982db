#include "orn/threading/Lock.h"

#include "orn/threading/ParkingTable.h"

#include <exception>

namespace ORN::Threading {

constinit TableSlot parkingTable[parkingSlots];

void createParking() {
    for (TableSlot& slot : parkingTable) {
        if (slot.parking().create()) continue;
        WinError const error;  // taken before anything below changes the thread's last error
        closeParking();
        throw error;
    }
}

void closeParking() noexcept {
    for (TableSlot& slot : parkingTable) slot.parking().close();
}

namespace {

struct Load {
    // An exception that leaves a static object's constructor would end the process without a word.
    Load() noexcept {
        try {
            createParking();
        } catch (std::exception const&) {
            os::refuseLoading();
        }
    }
    ~Load() { closeParking(); }
};

Load const load;

}

}

bool readWriteLockLock(LONG volatile& word, LONG add, LONG waitMask, DWORD timeout) {
    using namespace ORN::Threading;
    return acquire(LockWord{word}, slotOf(word), add, waitMask, timeout);
}

void readWriteLockUnlock(LONG volatile& word, LONG add) {
    using namespace ORN::Threading;
    release(LockWord{word}, slotOf(word), add);
}
