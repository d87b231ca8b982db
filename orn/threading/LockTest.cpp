#include "orn/threading/Lock.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

constexpr LONG exclusive = 0x10000000;
constexpr LONG shared = 1;
constexpr LONG exclusiveMask = -1;
constexpr LONG sharedMask = static_cast<LONG>(0xF0000000u);
constexpr DWORD infinite = 0xFFFFFFFF;

static_assert(std::is_same_v<ExclusiveLock, ReadWriteLock<0x10000000, -1>>);
static_assert(std::is_same_v<SharedLock, ReadWriteLock<1, static_cast<LONG>(0xF0000000u)>>);

TEST(Lock, EachOperationOnEachStateOfTheWord) {
    struct Case {
        LONG before, add, mask, after;  // after: -1 where the acquirer must wait
    } const cases[] = {
        {0, shared, sharedMask, 1},
        {1, shared, sharedMask, 2},
        {0x0FFFFFFE, shared, sharedMask, 0x0FFFFFFF},
        {exclusive, shared, sharedMask, -1},
        {0x20000000, shared, sharedMask, -1},
        {0x40000000, shared, sharedMask, -1},
        {static_cast<LONG>(0x80000000u), shared, sharedMask, -1},
        {0, exclusive, exclusiveMask, 0x10000000},
        {1, exclusive, exclusiveMask, -1},
        {0x0FFFFFFF, exclusive, exclusiveMask, -1},
        {exclusive, exclusive, exclusiveMask, -1},
    };
    for (Case const& one : cases) {
        LONG volatile word = one.before;
        bool const acquired = readWriteLockLock(word, one.add, one.mask, 1);
        EXPECT_EQ(acquired, one.after != -1) << std::hex << one.before << ' ' << one.add;
        EXPECT_EQ(word, acquired ? one.after : one.before) << std::hex << one.before << ' ' << one.add;
        if (!acquired) continue;
        readWriteLockUnlock(word, one.add);
        EXPECT_EQ(word, one.before) << std::hex << one.before << ' ' << one.add;
    }
}

TEST(Lock, ATimeLimitBoundsTheWaitInMilliseconds) {
    using std::chrono::milliseconds;
    LONG volatile word = exclusive;
    auto const start = std::chrono::steady_clock::now();
    EXPECT_FALSE(readWriteLockLock(word, shared, sharedMask, 150));
    auto const waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, milliseconds{130});
    EXPECT_EQ(word, exclusive);
}

TEST(Lock, GuardsStepOutAndBackIn) {
    LONG volatile word = 0;
    {
        SharedLock first{word};
        SharedLock second{word};
        EXPECT_EQ(word, 2);
        second.unlock();
        second.unlock();
        EXPECT_EQ(word, 1);
        second.lock();
        second.lock();
        EXPECT_EQ(word, 2);
        first.unlock();
    }
    EXPECT_EQ(word, 0);
    {
        ExclusiveLock lock{word};
        EXPECT_EQ(word, exclusive);
        lock.unlock();
        EXPECT_EQ(word, 0);
        SharedLock const meanwhile{word};
        EXPECT_EQ(word, 1);
    }
    EXPECT_EQ(word, 0);
}

/// A thread that acquires and releases once; tells when it has been through.
class Visitor {
public:
    Visitor(LONG volatile& word, LONG add, LONG mask)
        : thread_{[&word, add, mask, this] {
              EXPECT_TRUE(readWriteLockLock(word, add, mask, infinite));
              through_ = true;
              readWriteLockUnlock(word, add);
          }} {}
    ~Visitor() { thread_.join(); }

    bool through() const { return through_; }

private:
    std::atomic<bool> through_{false};
    std::thread thread_;
};

void settle() { std::this_thread::sleep_for(std::chrono::milliseconds{20}); }

TEST(Lock, AWriterWaitsForTheLastReaderAndReadersOnlyForTheWriter) {
    LONG volatile word = 2;
    {
        Visitor const writer{word, exclusive, exclusiveMask};
        settle();
        readWriteLockUnlock(word, shared);
        settle();
        EXPECT_FALSE(writer.through());
        EXPECT_EQ(word, 1);
        readWriteLockUnlock(word, shared);
    }
    EXPECT_EQ(word, 0);

    word = exclusive + 3;  // the readers inside are of no account to one that comes
    {
        Visitor const reader{word, shared, sharedMask};
        settle();
        EXPECT_FALSE(reader.through());
        readWriteLockUnlock(word, exclusive);
    }
    EXPECT_EQ(word, 3);
}

/// The published slot of a word: the top five bits of the product.
unsigned slotOf(LONG const volatile& word) {
    std::uint64_t const address = reinterpret_cast<std::uintptr_t>(&word);
    return static_cast<unsigned>(address * 0x9E3779B97F4A7C14u >> 59);
}

/// Words that share a slot, out of a large array.
std::vector<LONG volatile*> neighbours(std::vector<LONG>& room, std::size_t count) {
    std::vector<LONG volatile*> words;
    for (LONG& word : room) {
        if (words.size() < count && slotOf(word) == slotOf(room.front())) words.push_back(&word);
    }
    return words;
}

TEST(Lock, AReleaseLetsItsOwnWaiterThroughAndTheNeighboursWaitOn) {
    std::vector<LONG> room(4096);
    auto const words = neighbours(room, 2);
    ASSERT_EQ(words.size(), 2u);
    for (LONG volatile* const word : words) *word = exclusive;
    {
        Visitor const first{*words[0], exclusive, exclusiveMask};
        {
            Visitor const second{*words[1], shared, sharedMask};
            settle();
            readWriteLockUnlock(*words[1], exclusive);
        }  // the second gets through while the first word stays taken
        settle();
        EXPECT_FALSE(first.through());
        EXPECT_EQ(*words[0], exclusive);
        readWriteLockUnlock(*words[0], exclusive);
    }
    EXPECT_EQ(*words[0], 0);
    EXPECT_EQ(*words[1], 0);
}

// Each round releases one of two neighbours and holds the other until the waiter of the first is through: a wake-up that
// went to the wrong thread for good would never end.
TEST(Lock, NoThreadSleepsWhileItsOwnWordIsFree) {
    std::vector<LONG> room(4096);
    auto const words = neighbours(room, 4);
    ASSERT_EQ(words.size(), 4u);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::unique_ptr<Visitor>> visitors;
        for (LONG volatile* const word : words) {
            *word = exclusive;
            visitors.push_back(std::make_unique<Visitor>(*word, exclusive, exclusiveMask));
        }
        for (std::size_t last = words.size(); last-- > 0;) {
            readWriteLockUnlock(*words[last], exclusive);
            visitors[last].reset();
        }
    }
    for (LONG volatile* const word : words) EXPECT_EQ(*word, 0);
}

/// What a lock protects: a writer leaves the two equal, and a reader must find them so.
struct Account {
    LONG volatile word = 0;
    long left = 0, right = 0;
};

void visit(Account& account, bool write, std::atomic<long>& torn) {
    if (write) {
        ExclusiveLock const lock{account.word};
        ++account.left;
        if (account.left != account.right + 1) ++torn;
        ++account.right;
    } else {
        SharedLock const lock{account.word};
        if (account.left != account.right) ++torn;
    }
}

TEST(Lock, ManyThreadsAtManyWordsOfOneSlot) {
    constexpr int threads = 4;
    constexpr int rounds = 200'000;
    std::vector<Account> room(4096);
    std::vector<Account*> accounts;
    for (Account& account : room) {
        if (accounts.size() < 6 && slotOf(account.word) == slotOf(room.front().word)) accounts.push_back(&account);
    }
    ASSERT_EQ(accounts.size(), 6u);

    std::atomic<long> torn{0};
    std::vector<std::thread> crowd;
    for (int thread = 0; thread < threads; ++thread) {
        crowd.emplace_back([&, thread] {
            std::uint32_t random = 12345u + static_cast<std::uint32_t>(thread);
            for (int round = 0; round < rounds; ++round) {
                random = random * 1664525u + 1013904223u;
                visit(*accounts[random >> 24 & 1 ? 0 : random % 6], round % 4 == 0, torn);
            }
        });
    }
    for (std::thread& thread : crowd) thread.join();

    EXPECT_EQ(torn, 0);
    long writes = 0;
    for (Account const* account : accounts) {
        EXPECT_EQ(account->word, 0);
        EXPECT_EQ(account->left, account->right);
        writes += account->left;
    }
    EXPECT_EQ(writes, threads * rounds / 4);
}

TEST(Lock, ReadersAgainstAWaitingWriter) {
    constexpr int writes = 20'000;
    Account account;
    std::atomic<long> torn{0};
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 3; ++reader) {
        readers.emplace_back([&] {
            for (int round = 0; round < 200'000; ++round) visit(account, false, torn);
        });
    }
    for (int write = 0; write < writes; ++write) visit(account, true, torn);
    for (std::thread& reader : readers) reader.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(account.left, writes);
    EXPECT_EQ(account.word, 0);
}

}
