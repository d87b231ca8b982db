#include "orn/threading/Lock.h"

#include "orn/threading/ParkingTable.h"
#include "tests/support/Faults.h"

#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace {

using namespace ORN::Threading;
using std::chrono::milliseconds;

constexpr LONG exclusive = 0x10000000, shared = 1;
constexpr LONG exclusiveMask = -1, sharedMask = static_cast<LONG>(0xF0000000u);

static_assert(std::is_same_v<ExclusiveLock, ReadWriteLock<0x10000000, -1>>);
static_assert(std::is_same_v<SharedLock, ReadWriteLock<1, static_cast<LONG>(0xF0000000u)>>);

void awaitWaiter(LONG volatile& word) {
    while (slotOf(word).waiters() == 0) std::this_thread::yield();
}

void expectNobodyWaits(LONG volatile& word) {
    EXPECT_EQ(slotOf(word).waiters(), 0u);
    EXPECT_TRUE(slotOf(word).parking().idle());
}

TEST(ParkingTable, TheSlotIsTheTopFiveBitsOfTheProduct) {
    // An odd factor would give 18, 8, 10 and 26 for the last four.
    std::pair<std::uint64_t, std::size_t> const cases[] = {{0x0, 0},
                                                           {0x1, 19},
                                                           {0x4, 15},
                                                           {0x10, 28},
                                                           {0x1000, 14},
                                                           {0x140003A58, 26},
                                                           {0x7FFDEADBEEF0, 10},
                                                           {0xFFFFFFFFFFFFFFFF, 12},
                                                           {0x4EB24FD71E58, 17},
                                                           {0x790D44AF5D08, 7},
                                                           {0x7F98E9F7E16C, 9},
                                                           {0x5F1AC7C22D88, 25}};
    for (auto const& [address, slot] : cases) EXPECT_EQ(slotNumber(address), slot) << std::hex << address;
    LONG volatile word = 0;
    EXPECT_EQ(&slotOf(word), &parkingTable[slotNumber(reinterpret_cast<std::uintptr_t>(&word))]);
}

TEST(Lock, EachOperationOnEachStateOfTheWord) {
    struct {
        LONG before, add, mask, after;  // after: -1 where the acquirer must wait
    } const cases[] = {
        {0, shared, sharedMask, 1},
        {1, shared, sharedMask, 2},
        {0x0FFFFFFE, shared, sharedMask, 0x0FFFFFFF},
        {exclusive, shared, sharedMask, -1},
        {exclusive + 3, shared, sharedMask, -1},
        {0x20000000, shared, sharedMask, -1},
        {0x40000000, shared, sharedMask, -1},
        {static_cast<LONG>(0x80000000u), shared, sharedMask, -1},
        {0, exclusive, exclusiveMask, 0x10000000},
        {1, exclusive, exclusiveMask, -1},
        {0x0FFFFFFF, exclusive, exclusiveMask, -1},
        {exclusive, exclusive, exclusiveMask, -1},
    };
    for (auto const& one : cases) {
        LONG volatile word = one.before;
        bool const acquired = readWriteLockLock(word, one.add, one.mask, 1);
        EXPECT_EQ(word, one.after != -1 ? one.after : one.before) << std::hex << one.before << ' ' << one.add;
        EXPECT_EQ(acquired, one.after != -1) << std::hex << one.before << ' ' << one.add;
        if (acquired) readWriteLockUnlock(word, one.add);
        EXPECT_EQ(word, one.before) << std::hex << one.before << ' ' << one.add;
    }
}

TEST(Lock, GuardsStepOutAndBackIn) {
    LONG volatile word = 0;
    {
        SharedLock first{word}, second{word};
        EXPECT_EQ(word, 2);
        second.unlock();
        second.unlock();
        EXPECT_EQ(word, 1);
        second.lock();
        second.lock();
        EXPECT_EQ(word, 2);
        first.unlock();
    }
    ExclusiveLock lock{word};
    EXPECT_EQ(word, exclusive);
    lock.unlock();
    SharedLock const meanwhile{word};
    EXPECT_EQ(word, 1);
}

TEST(Lock, TheStandardGuardsTakeItsWords) {
    LONG volatile a = 0, b = 0;
    LockableWord first{a}, second{b}, again{a};
    {
        std::scoped_lock const both{first, second};
        EXPECT_TRUE(a == exclusive && b == exclusive);
        EXPECT_FALSE(again.try_lock() || again.try_lock_shared());
    }
    {
        std::shared_lock const one{first}, other{again, std::try_to_lock};
        EXPECT_TRUE(other.owns_lock() && a == 2);
        EXPECT_FALSE((std::unique_lock{again, std::try_to_lock}.owns_lock()));
        EXPECT_TRUE((std::unique_lock{second}.owns_lock()));
    }
    EXPECT_TRUE(a == 0 && b == 0);
}

TEST(Lock, AWaitThatTimesOutIsRefusedOrIsWokenLeavesNobodyBehind) {
    LONG volatile word = exclusive;
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(readWriteLockLock(word, shared, sharedMask, 990));  // a second begins meanwhile
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds{970});
    expectNobodyWaits(word);
    {
        faults::Refuse const refuse{"parkingWait"};
        EXPECT_EQ(thrown([&] { SharedLock const lock{word}; }), L"WinError: " + formatMessage(DWORD{6}, nullptr));
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_EQ(word, exclusive);
    expectNobodyWaits(word);
    {
        std::jthread const waiter{[&] { EXPECT_TRUE(readWriteLockLock(word, shared, sharedMask, 100'000)); }};
        std::this_thread::sleep_for(milliseconds{20});
        readWriteLockUnlock(word, exclusive);
    }
    EXPECT_EQ(word, shared);
    expectNobodyWaits(word);
}

TEST(Lock, ARefusedWakeUpThrowsWithTheWordFreeAndTheNextReleaseWakes) {
    LONG volatile word = 0;
    ExclusiveLock lock{word};
    std::thread waiter{[&] { ExclusiveLock const other{word}; }};
    awaitWaiter(word);
    std::this_thread::sleep_for(milliseconds{200});
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

TEST(Lock, ParkingThatCannotBeMadeThrowsAndLeavesNothing) {
    closeParking();
    {
        faults::Refuse const refuse{"parkingCreate", 5};
        std::wstring const told = thrown([] { createParking(); });
        EXPECT_EQ(told == L"nothing", refuse.refusals() == 0)
            << told;  // there is nothing to make, and to refuse, on Linux
    }
    createParking();
    LONG volatile word = exclusive;
    {
        std::jthread const waiter{[&] { SharedLock const lock{word}; }};
        awaitWaiter(word);
        readWriteLockUnlock(word, exclusive);
    }
    EXPECT_EQ(word, 0);
}

/// What a lock protects: a writer leaves the two equal, and a reader must find them so.
struct Account {
    LONG volatile word = 0;
    long left = 0, right = 0;

    void visit(bool write, std::atomic<long>& torn) {
        if (write) {
            ExclusiveLock const lock{word};
            torn += ++left != right + 1;
            ++right;
        } else {
            SharedLock const lock{word};
            torn += left != right;
        }
    }
};

// Words of one slot, one of them busier than the rest.
TEST(Lock, ACrowdOfReadersAndWriters) {
    constexpr std::uint32_t threads = 4, rounds = 200'000, words = 6;
    std::vector<Account> room(4096);
    std::vector<Account*> neighbours;
    for (Account& one : room)
        if (&slotOf(one.word) == &slotOf(room.front().word)) neighbours.push_back(&one);
    ASSERT_GE(neighbours.size(), words);
    std::atomic<long> torn{0};
    {
        std::vector<std::jthread> crowd;
        for (std::uint32_t thread = 0; thread < threads; ++thread)
            crowd.emplace_back([&, thread] {
                std::uint32_t random = 12345u + thread;
                for (std::uint32_t round = 0; round < rounds; ++round) {
                    random = random * 1664525u + 1013904223u;
                    neighbours[random >> 24 & 1 ? 0 : random % words]->visit(round % 4 == 0, torn);
                }
            });
    }
    EXPECT_EQ(torn, 0);
    long writes = 0;
    for (Account const& account : room) {
        EXPECT_TRUE(account.word == 0 && account.left == account.right);
        writes += account.left;
    }
    EXPECT_EQ(writes, threads * rounds / 4);
}

}
