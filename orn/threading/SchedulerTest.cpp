#include "orn/threading/Scheduler.h"

#include "tests/support/Tally.h"

#include <gtest/gtest.h>

#include <deque>
#include <stdexcept>
#include <thread>

using namespace ORN::Threading;

namespace {

/// Counts, and does whatever else before it waits.
struct CountingWaiter : Waiter {
    DWORD operator()(HANDLE handle) const override {
        ++waits;
        meanwhile();
        return BoringWaiter{}(handle);
    }
    std::function<void()> meanwhile = [] {};
    mutable std::atomic<int> waits = 0;
};

struct RefusingWaiter : Waiter {
    DWORD operator()(HANDLE) const override { return 0xFFFFFFFF; }
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
    CountingWaiter const waiter;
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
}

TEST(Scheduler, AFailedWaitCountsAsSuccess) {
    TestTask task{1, [] {}};
    TestScheduler scheduler;
    scheduler.insertAndReach(task);
    EXPECT_TRUE(scheduler.finish(RefusingWaiter{}));
    while (scheduler.exits == 0) std::this_thread::yield();  // the worker left to itself leaves all the same
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

    CountingWaiter waiter;
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

TEST(Scheduler, EveryoneWhoWaitsForTheTaskIsTold) {
    for (int round = 0; round < 200; ++round) {
        Tally go;
        TestTask running{1, [&] { go.reach(1); }};
        TestScheduler scheduler;
        scheduler.insertAndReach(running);
        CountingWaiter const waiter;
        std::vector<std::jthread> waiting;
        for (int i = 0; i < 3; ++i) waiting.emplace_back([&] { scheduler.interrupt(waiter); });
        while (waiter.waits < 3) std::this_thread::yield();
        ++go;
    }
}

TEST(Scheduler, WhatProcessTasksThrowsIsDiscardedAndTheQueueGoesOn) {
    CountingWaiter const waiter;
    Tally go;
    TestTask next{2}, failing{1, [&] {
                                  go.reach(1);
                                  throw std::runtime_error{"once"};
                              }};
    TestScheduler scheduler;
    scheduler.insertAndReach(failing);
    scheduler.insert(next);
    std::jthread const waits{[&] { scheduler.interrupt(waiter); }};
    while (waiter.waits == 0) std::this_thread::yield();
    int const wakes = scheduler.wakes;
    ++go;
    next.running.reach(1);
    EXPECT_GE(scheduler.wakes, wakes + 1);
    EXPECT_EQ(scheduler.starts, 1);
    scheduler.interrupt();
}

TEST(Scheduler, ThreadsThatInsertAtOnceStartOneWorkerAndWhatIsQueuedWhileFinishWaitsANewOne) {
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
    TestTask endless{1}, late{2, [] {}};
    TestScheduler scheduler;
    scheduler.insertAndReach(endless);
    CountingWaiter waiter;
    waiter.meanwhile = [&] { scheduler.insert(late); };
    EXPECT_TRUE(scheduler.finish(waiter));
    late.running.reach(1);
    EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
    EXPECT_TRUE(scheduler.starts == 2 && scheduler.exits == 2);
}

}
