#include "orn/threading/Lock.h"

#include "orn/threading/ParkingTable.h"
#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"

#include <chrono>
#include <thread>

namespace {

using namespace ORN::Threading;

constexpr LONG exclusive = 0x10000000;

TEST(ParkingTable, TheSlotIsTheTopFiveBitsOfTheProduct) {
    struct {
        std::uint64_t address;
        std::size_t slot;
    } const cases[] = {
        {0x0, 0},
        {0x1, 19},
        {0x4, 15},
        {0x10, 28},
        {0x1000, 14},
        {0x140003A58, 26},
        {0x7FFDEADBEEF0, 10},
        {0xFFFFFFFFFFFFFFFF, 12},
        {0x4EB24FD71E58, 17},  // an odd factor would give 18, 8, 10 and 26 from here
        {0x790D44AF5D08, 7},
        {0x7F98E9F7E16C, 9},
        {0x5F1AC7C22D88, 25},
    };
    for (auto const& one : cases) EXPECT_EQ(slotNumber(one.address), one.slot) << std::hex << one.address;
    LONG volatile word = 0;
    EXPECT_EQ(&slotOf(word), &parkingTable[slotNumber(reinterpret_cast<std::uintptr_t>(&word))]);
}

void expectNobodyWaits(LONG volatile& word) {
    EXPECT_EQ(slotOf(word).waiters(), 0u);
    EXPECT_TRUE(slotOf(word).parking().idle());
}

TEST(LockFailures, ATimedOutOrRefusedWaitLeavesNothingBehind) {
    LONG volatile word = exclusive;
    EXPECT_FALSE(readWriteLockLock(word, readWriteLockShared, readWriteLockWriter, 1));
    expectNobodyWaits(word);

    faults::Refuse const refuse{"parkingWait"};
    EXPECT_EQ(thrown([&] { SharedLock const lock{word}; }), L"WinError: " + formatMessage(DWORD{6}, nullptr));
    EXPECT_EQ(refuse.refusals(), 1);
    EXPECT_EQ(word, exclusive);
    expectNobodyWaits(word);
}

TEST(LockFailures, ARefusedWakeUpIsToldTheWordIsFreeAndTheNextReleaseMakesUpForIt) {
    LONG volatile word = 0;
    ExclusiveLock lock{word};
    std::thread waiter{[&] { ExclusiveLock const other{word}; }};
    while (slotOf(word).waiters() == 0) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds{200});
    {
        faults::Refuse const refuse{"parkingWake"};
        EXPECT_THROW(lock.unlock(), WinError);
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_EQ(word, 0);
    EXPECT_NO_THROW(lock.unlock());  // it is not held, and so not released again
    EXPECT_EQ(slotOf(word).waiters(), 1u);

    lock.lock();
    lock.unlock();
    waiter.join();
    EXPECT_EQ(word, 0);
    expectNobodyWaits(word);
}

TEST(LockFailures, ParkingThatCannotBeMadeIsToldAndLeavesNothing) {
    closeParking();
    {
        faults::Refuse const refuse{"parkingCreate", 5};
        std::wstring const told = thrown([] { createParking(); });
        EXPECT_EQ(told == L"nothing", refuse.refusals() == 0)
            << told;  // there is nothing to make, and to refuse, on Linux
    }
    createParking();
    LONG volatile word = exclusive;
    std::thread waiter{[&] { SharedLock const lock{word}; }};
    while (slotOf(word).waiters() == 0) std::this_thread::yield();
    readWriteLockUnlock(word, exclusive);
    waiter.join();
    EXPECT_EQ(word, 0);
}

}
