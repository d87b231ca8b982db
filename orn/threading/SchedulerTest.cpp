#include "orn/threading/Scheduler.h"

#include "orn/threading/ThreadName.h"
#include "tests/support/Tally.h"
#include "tests/support/ThreadName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <stdexcept>
#include <thread>

using namespace ORN::Threading;

namespace {

/// How a wait ends.
enum class Wait { patient, timedOut, failed, thrown };
constexpr Wait everyWait[] = {Wait::patient, Wait::timedOut, Wait::failed, Wait::thrown};

/// Counts its waits, does what else it is given, and ends in one of these ways: at once unless it is patient.
struct TestWaiter : Waiter {
    explicit TestWaiter(Wait wait = Wait::patient) : way{wait} {}

    DWORD operator()(HANDLE handle) const override {
        ++waits;
        meanwhile();
        if (way == Wait::thrown) throw std::runtime_error{"gave up"};
        return way == Wait::patient ? BoringWaiter{}(handle) : way == Wait::timedOut ? 258 : 0xFFFFFFFF;
    }

    Wait const way;
    std::function<void()> meanwhile = [] {};
    Tally mutable waits;
};

/// Runs until it is aborted, or does what it is given.
struct TestTask : Task<HWND> {
    explicit TestTask(int number, std::function<void()> body = {}) : window{handle(number)}, work{std::move(body)} {}

    static HWND handle(int number) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(number)); }

    HWND key() const override { return window; }
    void abort() override { ++aborted; }
    void run() {
        ++running;
        if (work) return work();
        aborted.reach(1);
    }

    HWND const window;
    std::function<void()> const work;
    Tally running, aborted;
};

class TestScheduler : public Scheduler<HWND> {
public:
    TestScheduler() : Scheduler{0} {}
    ~TestScheduler() override { finish(BoringWaiter{}); }

    void insert(TestTask& task) {
        ExclusiveLock guard{lockWord()};
        startThread(guard);
        queue_.push_back(&task);
        wakeWorker(guard);
    }
    void insertAndReach(TestTask& task) {
        insert(task);
        task.running.reach(1);
    }
    bool wasCancelled() const {
        ExclusiveLock const guard{lockWord()};
        return cancelled();
    }
    std::size_t queued() const {
        ExclusiveLock const guard{lockWord()};
        return queue_.size();
    }

    std::atomic<int> starts = 0, exits = 0, wakes = 0;

private:
    void onThreadStart() override { ++starts; }
    void onThreadExit() override { ++exits; }
    void processTasks() override {
        ++wakes;
        ExclusiveLock guard{lockWord()};
        while (!queue_.empty()) {
            setCancelled(false);
            current_ = queue_.front();
            queue_.pop_front();
            struct End {
                TestScheduler& self;
                ExclusiveLock& guard;
                ~End() {
                    guard.lock();
                    self.tellStopped();
                    self.current_ = nullptr;
                }
            } const end{*this, guard};
            TestTask& task = *current_;
            guard.unlock();
            task.run();
        }
    }
    void eraseWholeQueue() override { queue_.clear(); }
    char const* threadName() const override { return "test worker"; }
    TaskBase* taskInProgress() const override { return current_; }
    void eraseFromQueue(HWND const& window) override {
        std::erase_if(queue_, [&](TestTask const* task) { return task->window == window; });
    }

    std::deque<TestTask*> queue_;
    TestTask* current_ = nullptr;
};

TEST(Scheduler, AWorkerStartsWithTheFirstTaskAndEndsWithFinish) {
    TestScheduler scheduler;
    TestWaiter const waiter;
    EXPECT_TRUE(scheduler.finish(waiter));
    scheduler.interrupt(waiter);
    scheduler.cancel(TestTask::handle(1), waiter);
    EXPECT_EQ(waiter.waits, 0);
    for (int round = 1; round <= 3; ++round) {
        TestTask endless{1};
        scheduler.insertAndReach(endless);
        EXPECT_TRUE(scheduler.finish(waiter));
        EXPECT_TRUE(endless.aborted && scheduler.wasCancelled());
        EXPECT_TRUE(scheduler.starts == round && scheduler.exits == round);
    }
    EXPECT_EQ(waiter.waits, 3);
    EXPECT_EQ(BoringWaiter{}(nullptr), 0xFFFFFFFFu) << "nothing to wait for is a failure and no endless wait";
}

TEST(Scheduler, AWorkerHasItsNameAndAThreadRunsOnWhateverNameItIsGiven) {
    TestTask task{1, [] {
                      EXPECT_EQ(nameOfThisThread().value_or("test worker"), "test worker");
                      ORN::setThreadName("", 0xFFFFFFFF);
                      ORN::setThreadName("nobody", 0x7FFFFFFF);
                      ORN::setThreadName("orn-test-thread that is cut", 0xFFFFFFFF);
                      EXPECT_EQ(nameOfThisThread().value_or("orn-test-thread"), "orn-test-thread");
                  }};
    TestScheduler scheduler;
    scheduler.insertAndReach(task);
}

TEST(Scheduler, CancelDropsByKeyAndStopsOnlyThatKeysTaskAndInterruptLeavesTheFlagAlone) {
    TestTask running{1}, other{2}, same{1}, next{3};
    TestScheduler scheduler;
    scheduler.insertAndReach(running);
    scheduler.insert(other);
    scheduler.insert(same);
    scheduler.cancel(TestTask::handle(2));
    EXPECT_EQ(scheduler.queued(), 1u);
    EXPECT_FALSE(running.aborted || scheduler.wasCancelled());

    TestWaiter waiter;
    waiter.meanwhile = [&] { EXPECT_TRUE(scheduler.wasCancelled()); };  // needs the lock, which is not held meanwhile
    scheduler.cancel(TestTask::handle(1), waiter);
    EXPECT_TRUE(running.aborted && waiter.waits == 1);
    EXPECT_FALSE(other.running || same.running);

    waiter.meanwhile = [] {};
    scheduler.insertAndReach(next);
    scheduler.interrupt(waiter);
    EXPECT_TRUE(next.aborted && waiter.waits == 2);
    EXPECT_FALSE(scheduler.wasCancelled());
}

// Some come, and those of them who lose patience go, before others come: in every order of four who wait.
TEST(Scheduler, WhoWaitsIsToldWhenTheTaskHasStoppedAndOnlyThenWhoeverElseGivesUp) {
    for (std::size_t order = 0; order < 256; ++order) {
        Tally go;
        std::atomic<bool> stopped = false;
        TestTask running{1, [&] {
                             go.reach(1);
                             stopped = true;
                         }};
        TestScheduler scheduler;
        scheduler.insertAndReach(running);
        std::vector<std::jthread> waiting;
        std::deque<TestWaiter> waiters;
        std::atomic<int> early = 0, thrown = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            TestWaiter& waiter = waiters.emplace_back(everyWait[order >> 2 * i & 3]);
            waiting.emplace_back([&] {
                try {
                    scheduler.cancel(TestTask::handle(1), waiter);
                } catch (std::runtime_error const&) {
                    ++thrown;
                }
                early += waiter.way == Wait::patient && !stopped;
            });
            waiter.waits.reach(1);
            if (waiter.way != Wait::patient) waiting.back().join();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
        ++go;
        waiting.clear();
        EXPECT_EQ(early, 0) << order;
        EXPECT_EQ(thrown, std::ranges::count(waiters, Wait::thrown, &TestWaiter::way));
    }
}

TEST(Scheduler, WhatProcessTasksThrowsIsDiscardedAndTheQueueGoesOn) {
    TestWaiter const waiter;
    Tally go;
    TestTask next{2}, failing{1, [&] {
                                  go.reach(1);
                                  throw std::runtime_error{"once"};
                              }};
    TestScheduler scheduler;
    scheduler.insertAndReach(failing);
    scheduler.insert(next);
    std::jthread const waits{[&] { scheduler.interrupt(waiter); }};
    waiter.waits.reach(1);
    int const wakes = scheduler.wakes;
    ++go;
    next.running.reach(1);
    EXPECT_GE(scheduler.wakes, wakes + 1);
    EXPECT_EQ(scheduler.starts, 1);
    scheduler.interrupt();
}

TEST(Scheduler, ThreadsThatInsertAtOnceStartOneWorker) {
    for (int round = 0; round < 100; ++round) {
        TestTask a{1, [] {}}, b{2, [] {}};
        TestScheduler scheduler;
        {
            std::jthread const first{[&] { scheduler.insertAndReach(a); }},
                second{[&] { scheduler.insertAndReach(b); }};
        }
        EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
        EXPECT_TRUE(scheduler.starts == 1 && scheduler.exits == 1);
    }
}

// What comes in while finish waits: from the task that was aborted, and from whoever waits.
TEST(Scheduler, FinishDropsWhatIsQueuedUntilItReturnsHoweverItsWaitEnds) {
    for (Wait const way : everyWait) {
        Tally queuedMore, open;
        std::atomic<int> running = 0;
        TestScheduler scheduler;
        TestTask late[3]{TestTask{2}, TestTask{3}, TestTask{4}};
        TestTask first{1, [&] {
                           ++running;
                           first.aborted.reach(1);
                           scheduler.insert(late[0]);
                           scheduler.insert(late[1]);
                           ++queuedMore;
                           open.reach(1);
                           --running;
                       }};
        TestTask next{5, [&] { EXPECT_EQ(running, 0) << "two tasks run at once"; }};
        TestWaiter waiter{way};
        waiter.meanwhile = [&] {
            queuedMore.reach(1);
            scheduler.insert(late[2]);
            if (way == Wait::patient) ++open;
        };
        scheduler.insertAndReach(first);
        auto const finish = [&] { return scheduler.finish(waiter); };
        if (way == Wait::thrown) {
            EXPECT_THROW(finish(), std::runtime_error);
        } else {
            EXPECT_TRUE(finish());
        }
        EXPECT_EQ(scheduler.queued(), 0u);
        EXPECT_EQ(scheduler.starts, 1);
        EXPECT_EQ(scheduler.exits, way == Wait::patient ? 1 : 0);

        if (way != Wait::failed) scheduler.insert(next);
        ++open;
        if (way != Wait::failed) next.running.reach(1);
        EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
        EXPECT_EQ(scheduler.exits, scheduler.starts) << "finish waits for a worker that it gave up before, too";
        for (TestTask const& task : late) EXPECT_EQ(task.running, 0);
    }
}

TEST(Scheduler, ATaskThatWaitsForItselfIsToldSoAndDropped) {
    TestWaiter const waiter;
    TestScheduler scheduler;
    TestTask last{9, [] {}};
    std::function<void()> const waits[] = {[&] { scheduler.cancel(TestTask::handle(1), waiter); },
                                           [&] { scheduler.interrupt(waiter); }, [&] { scheduler.finish(waiter); }};
    std::deque<TestTask> tasks;
    for (auto const& wait : waits)
        scheduler.insert(tasks.emplace_back(static_cast<int>(tasks.size()) + 1, [&] {
            wait();
            ADD_FAILURE() << "the wait came back";
        }));
    scheduler.insertAndReach(last);
    EXPECT_TRUE(scheduler.finish(waiter));
    EXPECT_EQ(waiter.waits, 1);
    for (TestTask const& task : tasks) EXPECT_TRUE(task.running && !task.aborted);
}

}
