#include "orn/threading/Lock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace {

constexpr LONG exclusive = 0x10000000, shared = 1;
constexpr LONG exclusiveMask = -1, sharedMask = static_cast<LONG>(0xF0000000u);

static_assert(std::is_same_v<ExclusiveLock, ReadWriteLock<0x10000000, -1>>);
static_assert(std::is_same_v<SharedLock, ReadWriteLock<1, static_cast<LONG>(0xF0000000u)>>);

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

TEST(Lock, ATimeLimitBoundsTheWaitInMillisecondsAndIsNotReachedByATimedWaitThatIsWoken) {
    LONG volatile word = exclusive;
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(readWriteLockLock(word, shared, sharedMask, 990));  // a second begins meanwhile
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds{970});

    std::jthread const waiter{[&] { EXPECT_TRUE(readWriteLockLock(word, shared, sharedMask, 100'000)); }};
    std::this_thread::sleep_for(std::chrono::milliseconds{20});
    readWriteLockUnlock(word, exclusive);
}

TEST(Lock, GuardsStepOutAndBackIn) {
    LONG volatile word = 0;
    {
        SharedLock first{word}, second{word};
        EXPECT_EQ(word, 2);
        for (int time : {1, 2}) {
            second.unlock();
            EXPECT_EQ(word, 1) << time;
        }
        for (int time : {1, 2}) {
            second.lock();
            EXPECT_EQ(word, 2) << time;
        }
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

/// Accounts whose words share a slot, which is the top five bits of a product.
std::vector<Account*> neighbours(std::vector<Account>& room, std::size_t count) {
    auto const slotOf = [](Account const& one) {
        return std::uint64_t{reinterpret_cast<std::uintptr_t>(&one.word)} * 0x9E3779B97F4A7C14u >> 59;
    };
    std::vector<Account*> found;
    for (Account& one : room)
        if (found.size() < count && slotOf(one) == slotOf(room.front())) found.push_back(&one);
    EXPECT_EQ(found.size(), count);
    return found;
}

// Many words of one slot, one of them busier than the rest, and one word whose writer waits for its readers.
TEST(Lock, ACrowdOfReadersAndWriters) {
    std::vector<Account> room(4096);
    for (std::size_t const words : {6, 1}) {
        constexpr std::uint32_t threads = 4, rounds = 150'000;
        auto const accounts = neighbours(room, words);
        std::atomic<long> torn{0};
        {
            std::vector<std::jthread> crowd;
            for (std::uint32_t thread = 0; thread < threads; ++thread)
                crowd.emplace_back([&, thread] {
                    std::uint32_t random = 12345u + thread;
                    for (std::uint32_t round = 0; round < rounds; ++round) {
                        random = random * 1664525u + 1013904223u;
                        bool const write = words == 1 ? thread == 0 && round % 8 == 0 : round % 4 == 0;
                        accounts[random >> 24 & 1 ? 0 : random % words]->visit(write, torn);
                    }
                });
        }
        EXPECT_EQ(torn, 0);
        long writes = 0;
        for (Account* const account : accounts) {
            EXPECT_EQ(account->word, 0);
            EXPECT_EQ(account->left, account->right);
            writes += std::exchange(account->left, account->right = 0);
        }
        EXPECT_EQ(writes, words == 1 ? rounds / 8 : threads * rounds / 4);
    }
}

}
