#include "orn/threading/LockSteps.h"

#include "orn/threading/EpochParking.h"
#include "orn/threading/SemaphoreParking.h"
#include "tests/support/Schedules.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <span>

namespace {

using namespace ORN::Threading;
using schedules::Machine;

constexpr DWORD infinite = 0xFFFFFFFF;
constexpr DWORD someTime = 1000;
constexpr LONG exclusive = 0x10000000;
constexpr LONG shared = 1;

LONG maskOf(LONG add) { return add == exclusive ? -1 : static_cast<LONG>(0xF0000000u); }

/// Threads that sleep until one call wakes all of them, and for no other reason.
struct Sleepers {
    std::set<std::size_t> asleep;

    void add() { asleep.insert(Machine::current->self()); }  ///< as a part of a step
    DWORD sleep(DWORD timeout) {
        auto const woken = [this, self = Machine::current->self()] { return !asleep.contains(self); };
        return static_cast<DWORD>(Machine::await(woken, timeout != infinite, [] { return 0; }));
    }
    void wake() {
        Machine::step([this] { return asleep.clear(), 0; });
    }
};

/// A futex as the kernel keeps it: it compares the word before a thread goes to sleep.
struct Futex {
    template <typename T>
    using Atomic = schedules::Atomic<T>;

    static inline Sleepers sleepers;

    static DWORD wait(Atomic<std::uint32_t>& word, std::uint32_t expected, DWORD timeout) {
        auto const differs = [&] { return word.now() != expected || (sleepers.add(), false); };
        while (Machine::step(differs) == 0)
            if (DWORD const result = sleepers.sleep(timeout); result != 0) return result;
        return 0;
    }
    static bool wakeAll(Atomic<std::uint32_t>&) { return sleepers.wake(), true; }
};

/// A counting semaphore that serves in no order: the first thread that looks takes the count.
struct Semaphore {
    long counts = 0;

    DWORD wait(DWORD timeout) {
        auto const take = [this] { return counts > 0 ? (--counts, 0) : 258; };
        auto const ready = [this] { return counts > 0; };
        return static_cast<DWORD>(timeout == 0 ? Machine::step(take)
                                               : Machine::await(ready, timeout != infinite, take));
    }
    bool release(std::uint32_t more) {
        return Machine::step([&] { return counts += static_cast<long>(more); }) != 0;
    }
};

/// A lock and a condition, as a system has them: a thread that sleeps has let the lock go.
struct Room {
    bool locked = false;
    Sleepers sleepers;

    void lock() {
        Machine::await([this] { return !locked; }, false, [this] { return locked = true; });
    }
    void unlock() {
        Machine::step([this] { return locked = false; });
    }
    DWORD sleep(DWORD timeout) {
        Machine::step([this] { return sleepers.add(), locked = false; });
        DWORD const result = sleepers.sleep(timeout);
        lock();
        return result;
    }
    void wakeAll() { sleepers.wake(); }
};

template <typename RoomAside>
struct SemaphoreKernel {
    template <typename T>
    using Atomic = schedules::Atomic<T>;
    using Semaphore = ::Semaphore;
    using Room = RoomAside;
};

using Epoch = EpochParking<Futex>;
using Counted = SemaphoreParking<SemaphoreKernel<Room>>;

/// A parking without the cure of lost wake-ups: its ticket is that of the time of going to sleep.
template <typename Parking>
struct Late : Parking {
    DWORD sleep(typename Parking::Ticket& ticket, DWORD timeout) {
        this->giveBack(ticket);
        ticket = this->takeTicket();
        return Parking::sleep(ticket, timeout);
    }
};

/// A parking without the cure of going round: no thread is kept aside.
struct OpenRoom : Room {
    DWORD sleep(DWORD) { return 0; }
};
using Restless = SemaphoreParking<SemaphoreKernel<OpenRoom>>;

/// A lock word that notices when a writer is not alone inside.
struct Word {
    schedules::Atomic<LONG>& value;
    bool& crowded;

    LONG read() const { return value.load(); }
    bool swap(LONG& seen, LONG next) {
        bool const done = value.compare_exchange_strong(seen, next);
        crowded |= done && next > 3 && next != exclusive;
        return done;
    }
};

/// A thread that acquires and releases a word `rounds` times.
struct Visit {
    int word;
    LONG add;
    DWORD timeout = infinite;
    int rounds = 1;
};

/// Two lock words on one slot, and the threads at them. A holder of both, where there is one, holds them from the start,
/// releases the second, and the first only when a visitor of the second is through.
struct Setting {
    std::vector<Visit> visits;
    bool holder = false;
};

constexpr char const* lost = "a wake-up was lost";
constexpr char const* endless = "went on and on";

/// Plays a setting in the order that `choose` says, limited as `limit` says; empty when all went well, as far as the others
/// get where one halts.
template <typename Parking>
std::string play(Setting const& setting, Machine::Chooser const& choose, auto limit) {
    Futex::sleepers = {};
    Machine machine;
    schedules::Atomic<LONG> first{setting.holder ? exclusive : 0}, second{first};
    bool crowded = false;
    ParkingSlot<Parking> slot;
    int through[2]{};
    auto const at = [&](int word) { return Word{word == 0 ? first : second, crowded}; };
    if (setting.holder)
        machine.add([&] {
            release(at(1), slot, exclusive);
            Machine::await([&] { return through[1] != 0; }, false, [] { return 0; });
            release(at(0), slot, exclusive);
        });
    for (Visit const& visit : setting.visits)
        machine.add([&] {
            for (int round = 0; round < visit.rounds; ++round)
                if (LONG seen; acquireAtOnce(at(visit.word), seen, visit.add, maskOf(visit.add)) ||
                               acquire(at(visit.word), slot, visit.add, maskOf(visit.add), visit.timeout))
                    release(at(visit.word), slot, visit.add);
            Machine::step([&] { return ++through[visit.word]; });
        });

    limit(machine);
    Machine::End const end = machine.run(choose);
    if (end > Machine::End::halted) return end == Machine::End::stuck ? lost : endless;
    if (crowded) return "a writer was not alone inside";
    if (end == Machine::End::halted) return "";
    if (first.now() != 0 || second.now() != 0) return "a word is not free";
    return slot.waiters() != 0 || !slot.parking().idle() ? "a waiter is left over" : "";
}

Machine::Chooser seeded(std::uint64_t seed) {
    return [random = std::mt19937_64{seed}](std::size_t count) mutable {
        return static_cast<std::size_t>(random() % count);
    };
}

Setting const twoThreads[] = {{{{0, exclusive}, {0, exclusive}}},
                              {{{0, exclusive}, {0, shared}}},
                              {{{0, shared, someTime}, {0, exclusive}}},
                              {{{0, exclusive}, {1, exclusive}}}};

Setting const threeThreads[] = {
    {{{0, exclusive, infinite, 2}, {0, exclusive, infinite, 2}, {0, exclusive, infinite, 2}}},
    {{{0, exclusive, infinite, 2}, {0, shared, infinite, 2}, {0, shared, infinite, 2}}},
    {{{0, exclusive, someTime, 2}, {0, shared, someTime, 2}, {0, exclusive, someTime, 2}}},
    {{{0, exclusive}, {1, shared}}, true},
    {{{0, shared, someTime}, {1, exclusive}}, true},
    {{{0, exclusive, infinite, 2}, {0, shared, infinite, 2}, {1, exclusive, infinite, 2}}},
};

/// Plays the settings in every order with at most so many turns.
template <typename Parking>
void playEveryOrder(std::span<Setting const> settings, int turns) {
    for (Setting const& setting : settings) {
        std::string fault;
        long const count = schedules::forEverySchedule([&](Machine::Chooser const& choose) {
            fault = play<Parking>(setting, choose, [=](Machine& machine) { machine.limitTurns(turns); });
            return fault.empty();
        });
        EXPECT_EQ(fault, "") << "setting " << &setting - settings.data() << ", schedule " << count;
        EXPECT_GE(count, 100) << "setting " << &setting - settings.data();
    }
}

/// Plays the settings with each thread standing still after each number of steps, and counts the outcomes of this kind.
template <typename Parking>
int outcomesWhereOneHalts(char const* outcome, std::span<Setting const> settings, std::size_t threads) {
    int count = 0;
    for (Setting const& setting : settings)
        for (std::size_t thread = 0; thread < threads; ++thread)
            for (int steps = 0; steps < 28; ++steps)
                for (std::uint64_t seed = 1; seed <= 10; ++seed) {
                    auto const halt = [=](Machine& machine) { machine.halt(thread, steps); };
                    count += play<Parking>(setting, seeded(seed), halt) == outcome;
                }
    return count;
}

template <typename Parking>
class LockSchedules : public testing::Test {};
using Parkings = testing::Types<Epoch, Counted>;
TYPED_TEST_SUITE(LockSchedules, Parkings);

TYPED_TEST(LockSchedules, EveryOrderOfFewTurns) {
    playEveryOrder<TypeParam>(twoThreads, 5);
    playEveryOrder<TypeParam>(threeThreads, 2);
}

TYPED_TEST(LockSchedules, ThreeThreadsInSeededOrders) {
    auto const freely = [](Machine&) {};
    int losses = 0;
    for (Setting const& setting : threeThreads)
        for (std::uint64_t seed = 1; seed <= 1000; ++seed) {
            EXPECT_EQ(play<TypeParam>(setting, seeded(seed), freely), "")
                << "setting " << &setting - threeThreads << ", seed " << seed;
            if (seed <= 100) losses += play<Late<TypeParam>>(setting, seeded(seed), freely) == lost;
        }
    EXPECT_GT(losses, 0) << "without the cure these schedules lose a wake-up";
}

TYPED_TEST(LockSchedules, NobodyGoesRoundWhileAnotherStandsStill) {
    EXPECT_EQ(outcomesWhereOneHalts<TypeParam>(endless, threeThreads, 3), 0);
    EXPECT_GT(outcomesWhereOneHalts<Restless>(endless, {threeThreads + 3, 1}, 3), 0) << "without the room aside";
}

TEST(LockSchedules, AReleaseReliesOnNoOtherWhereTheKernelCompares) {
    Setting const settings[] = {{{{0, exclusive}, {1, exclusive}, {1, exclusive}}},
                                {{{0, exclusive, infinite, 2}, {1, shared}, {1, exclusive, infinite, 2}}}};
    EXPECT_EQ(outcomesWhereOneHalts<Epoch>(lost, settings, 1), 0);
}

}
