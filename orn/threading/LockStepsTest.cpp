#include "orn/threading/LockSteps.h"

#include "orn/os/EpochParking.h"
#include "orn/os/SemaphoreParking.h"
#include "tests/support/Schedules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace {

using namespace ORN::Threading;
using schedules::Machine;

constexpr DWORD infinite = 0xFFFFFFFF;
constexpr DWORD someTime = 1000;
constexpr LONG exclusive = 0x10000000;
constexpr LONG shared = 1;

LONG maskOf(LONG add) { return add == exclusive ? -1 : static_cast<LONG>(0xF0000000u); }

/// A futex as the kernel keeps it: who sleeps stays asleep until woken, whatever happens to the word.
struct Futex {
    template <typename T>
    using Atomic = schedules::Atomic<T>;

    static inline std::set<std::size_t> sleepers;

    static DWORD wait(Atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) {
        for (;;) {
            bool const differs = Machine::step([&] {
                if (word.now() == expected) sleepers.insert(Machine::current->self());
                return word.now() != expected;
            });
            if (differs) return 0;
            std::size_t const self = Machine::current->self();
            auto const woken = [self] { return !sleepers.contains(self); };
            if (Machine::await(woken, timeout != infinite, [] { return 0; }) != 0) return 258;
        }
    }

    static bool wakeAll(Atomic<std::uint32_t>&) {
        Machine::step([] {
            sleepers.clear();
            return 0;
        });
        return true;
    }
};

/// A counting semaphore that serves in no order: whoever looks first takes the count.
struct Semaphore {
    long counts = 0;

    bool create() noexcept { return true; }
    void close() noexcept {}
    DWORD wait(DWORD timeout) {
        if (timeout == 0) {
            return static_cast<DWORD>(Machine::step([this] { return counts > 0 ? (--counts, 0) : 258; }));
        }
        return static_cast<DWORD>(
            Machine::await([this] { return counts > 0; }, timeout != infinite, [this] { return --counts, 0; }));
    }
    bool release(std::uint32_t more) {
        Machine::step([&] { return counts += static_cast<long>(more); });
        return true;
    }
};

struct SemaphoreKernel {
    template <typename T>
    using Atomic = schedules::Atomic<T>;
    using Semaphore = ::Semaphore;
};

/// The semaphore without its ledger: a count for each waiter. Here to be found at fault.
struct BareSemaphore {
    using Counter = schedules::Atomic<std::uint32_t>;
    using Ticket = int;
    ::Semaphore semaphore;

    Ticket takeTicket() { return 0; }
    DWORD sleep(Ticket, DWORD timeout) { return semaphore.wait(timeout); }
    void giveBack(Ticket) {}
    bool wake() { return semaphore.release(2); }
    bool idle() const { return true; }
};

/// An epoch that is read when a thread begins to sleep, and so too late. Here to be found at fault.
struct LateTicket {
    using Counter = schedules::Atomic<std::uint32_t>;
    using Ticket = int;
    Counter epoch{0};

    Ticket takeTicket() { return 0; }
    DWORD sleep(Ticket, DWORD timeout) { return Futex::wait(epoch, epoch.load(), timeout); }
    void giveBack(Ticket) {}
    bool wake() {
        epoch.fetch_add(1);
        return Futex::wakeAll(epoch);
    }
    bool idle() const { return true; }
};

using Epoch = ORN::os::EpochParking<Futex>;
using Counted = ORN::os::SemaphoreParking<SemaphoreKernel>;

/// A lock word that watches who is inside.
class Word {
public:
    explicit Word(LONG& value, std::string& fault) : value_{&value}, fault_{&fault} {}

    LONG read() const {
        return static_cast<LONG>(Machine::step([this] { return static_cast<std::uint32_t>(*value_); }));
    }
    bool swap(LONG& seen, LONG next) {
        auto const before = static_cast<LONG>(Machine::step([&] {
            LONG const now = *value_;
            if (now == seen) {
                if (next > now && now >= exclusive) *fault_ = "entered while a writer was inside";
                if (next - now == exclusive && now != 0) *fault_ = "a writer entered while others were inside";
                *value_ = next;
            }
            return static_cast<std::uint32_t>(now);
        }));
        return std::exchange(seen, before) == before;
    }

private:
    LONG* value_;
    std::string* fault_;
};

/// Two lock words on one slot, and the threads at them.
template <typename Parking>
class Scene {
public:
    Scene() { Futex::sleepers.clear(); }

    /// Acquires and releases the word `rounds` times.
    void visitor(int word, LONG add, DWORD timeout = infinite, int rounds = 1) {
        machine_.add([=, this] {
            for (int round = 0; round < rounds; ++round) {
                if (acquire(at(word), slot_, add, maskOf(add), timeout)) release(at(word), slot_, add);
            }
            Machine::step([this, word] { return ++through_[word]; });
        });
    }

    /// Holds both words from the start, releases the second, and the first only when a visitor of the second is through.
    void holderOfBoth() {
        words_[0] = words_[1] = exclusive;
        machine_.add([this] {
            release(at(1), slot_, exclusive);
            Machine::await([this] { return through_[1] != 0; }, false, [] { return 0; });
            release(at(0), slot_, exclusive);
        });
    }

    /// Empty when all went well.
    std::string run(Machine::Chooser const& choose) {
        switch (machine_.run(choose)) {
            case Machine::End::stuck: return "a wake-up was lost";
            case Machine::End::endless: return "went on and on";
            case Machine::End::done: break;
        }
        if (!fault_.empty()) return fault_;
        if (words_[0] != 0 || words_[1] != 0) return "a word is not free";
        Machine idle;
        bool waiting = false;
        idle.add([&] { waiting = slot_.waiters() != 0 || !slot_.parking().idle(); });
        idle.run([](std::size_t) { return 0u; });
        return waiting ? "a waiter is left over" : "";
    }

private:
    Word at(int word) { return Word{words_[word], fault_}; }

    Machine machine_;
    LONG words_[2]{};
    std::string fault_;
    ParkingSlot<Parking> slot_;
    int through_[2]{};
};

template <typename Parking>
class LockSchedules : public testing::Test {};
using Parkings = testing::Types<Epoch, Counted>;
TYPED_TEST_SUITE(LockSchedules, Parkings);

TYPED_TEST(LockSchedules, TwoThreadsInEveryOrder) {
    struct Case {
        int words[2];
        LONG adds[2];
        DWORD timeouts[2];
        long fewest;
    } const cases[] = {
        {{0, 0}, {exclusive, exclusive}, {infinite, infinite}, 1000},
        {{0, 0}, {exclusive, shared}, {infinite, infinite}, 1000},
        {{0, 0}, {shared, shared}, {infinite, infinite}, 20},
        {{0, 1}, {exclusive, exclusive}, {infinite, infinite}, 20},
        {{0, 0}, {exclusive, exclusive}, {infinite, someTime}, 1000},
        {{0, 0}, {shared, exclusive}, {someTime, someTime}, 1000},
    };
    for (Case const& one : cases) {
        schedules::EverySchedule every;
        long count = 0;
        do {
            Scene<TypeParam> scene;
            for (int thread : {0, 1}) scene.visitor(one.words[thread], one.adds[thread], one.timeouts[thread]);
            ASSERT_EQ(scene.run(std::ref(every)), "") << "case " << &one - cases << ", schedule " << count;
            ++count;
        } while (every.next());
        EXPECT_GE(count, one.fewest) << "case " << &one - cases;
        testing::Test::RecordProperty("schedules" + std::to_string(&one - cases), std::to_string(count));
    }
}

template <typename Parking>
void threeThreads(int scene, Scene<Parking>& made) {
    switch (scene) {
        case 0:
            for (LONG const add : {exclusive, exclusive, exclusive}) made.visitor(0, add, infinite, 2);
            break;
        case 1:
            for (LONG const add : {exclusive, shared, shared}) made.visitor(0, add, infinite, 2);
            break;
        case 2:
            for (LONG const add : {exclusive, shared, exclusive}) made.visitor(0, add, someTime, 2);
            break;
        case 3:
            made.holderOfBoth();
            made.visitor(0, exclusive);
            made.visitor(1, shared);
            break;
        case 4:
            made.holderOfBoth();
            made.visitor(0, shared, someTime);
            made.visitor(1, exclusive);
            break;
        default:
            made.visitor(0, exclusive, infinite, 2);
            made.visitor(0, shared, infinite, 2);
            made.visitor(1, exclusive, infinite, 2);
            break;
    }
}
constexpr int scenes = 6;

TYPED_TEST(LockSchedules, ThreeThreadsInSeededOrders) {
    for (int scene = 0; scene < scenes; ++scene) {
        for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
            Scene<TypeParam> made;
            threeThreads(scene, made);
            EXPECT_EQ(made.run(schedules::SeededSchedule{seed}), "") << "scene " << scene << ", seed " << seed;
        }
    }
}

template <typename Parking>
int lostWakeUps(int scene) {
    int lost = 0;
    for (std::uint64_t seed = 1; seed <= 2000; ++seed) {
        Scene<Parking> made;
        threeThreads(scene, made);
        lost += made.run(schedules::SeededSchedule{seed}) == "a wake-up was lost";
    }
    return lost;
}

TEST(LockSchedules, FindTheWakeUpsThatAParkingWithoutItsCureLoses) {
    EXPECT_GT(lostWakeUps<BareSemaphore>(3), 0);
    EXPECT_GT(lostWakeUps<LateTicket>(0), 0);
}

}
