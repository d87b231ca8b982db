#include "orn/threading/Scheduler.h"

#include "orn/os/Waitable.h"
#include "orn/threading/ThreadName.h"
#include "tests/support/Faults.h"
#include "tests/support/Tally.h"
#include "tests/support/ThreadName.h"

#include <algorithm>
#include <chrono>
#include <deque>
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

    using Scheduler::startThread;

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

    Tally starts, exits;
    std::atomic<DWORD> exitCode = 0;  ///< with which workers end as soon as they have started, unless it is 0

private:
    void onThreadStart() override {
        DWORD const code = exitCode;
        ++starts;
        if (code != 0) ORN::os::exitThread(code);
    }
    void onThreadExit() override { ++exits; }
    void processTasks() override {
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

class SchedulerTest : public testing::Test {
protected:
    TestScheduler scheduler_;
    TestWaiter waiter_;
};

TEST_F(SchedulerTest, AWorkerStartsWithTheFirstTaskAndEndsWithFinish) {
    EXPECT_TRUE(scheduler_.finish(waiter_));
    scheduler_.interrupt(waiter_);
    scheduler_.cancel(TestTask::handle(1), waiter_);
    EXPECT_EQ(waiter_.waits, 0);
    for (int round = 1; round <= 3; ++round) {
        TestTask endless{1};
        scheduler_.insertAndReach(endless);
        EXPECT_TRUE(scheduler_.finish(waiter_));
        EXPECT_TRUE(endless.aborted && scheduler_.wasCancelled());
        EXPECT_TRUE(scheduler_.starts == round && scheduler_.exits == round);
    }
    EXPECT_EQ(waiter_.waits, 3);
    EXPECT_EQ(BoringWaiter{}(nullptr), 0xFFFFFFFFu) << "nothing to wait for is a failure and no endless wait";
}

TEST_F(SchedulerTest, AWorkerHasItsNameAndAThreadRunsOnWhateverNameItIsGiven) {
    TestTask task{1, [] {
                      EXPECT_EQ(nameOfThisThread().value_or("test worker"), "test worker");
                      ORN::setThreadName("", 0xFFFFFFFF);
                      ORN::setThreadName("nobody", 0x7FFFFFFF);
                      ORN::setThreadName("orn-test-thread that is cut", 0xFFFFFFFF);
                      EXPECT_EQ(nameOfThisThread().value_or("orn-test-thread"), "orn-test-thread");
                  }};
    scheduler_.insertAndReach(task);
    scheduler_.cancel(task.window, waiter_);
}

TEST_F(SchedulerTest, CancelDropsByKeyAndStopsOnlyThatKeysTaskAndInterruptLeavesTheFlagAlone) {
    TestTask running{1}, other{2}, same{1}, next{3};
    scheduler_.insertAndReach(running);
    scheduler_.insert(other);
    scheduler_.insert(same);
    scheduler_.cancel(TestTask::handle(2));
    EXPECT_EQ(scheduler_.queued(), 1u);
    EXPECT_FALSE(running.aborted || scheduler_.wasCancelled());

    waiter_.meanwhile = [&] { EXPECT_TRUE(scheduler_.wasCancelled()); };  // needs the lock, which is not held meanwhile
    scheduler_.cancel(TestTask::handle(1), waiter_);
    EXPECT_TRUE(running.aborted && waiter_.waits == 1);

    waiter_.meanwhile = [] {};
    scheduler_.insertAndReach(next);
    scheduler_.interrupt(waiter_);
    EXPECT_TRUE(next.aborted && waiter_.waits == 2);
    EXPECT_FALSE(other.running || same.running || scheduler_.wasCancelled());
}

// Some come, and those of them who lose patience go, before others come: in every order of four who wait.
TEST_F(SchedulerTest, WhoWaitsIsToldWhenTheTaskHasStoppedAndOnlyThenWhoeverElseGivesUp) {
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
        std::atomic<int> early = 0, gaveUp = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            TestWaiter& waiter = waiters.emplace_back(everyWait[order >> 2 * i & 3]);
            waiting.emplace_back([&] {
                gaveUp += thrown([&] { scheduler.cancel(TestTask::handle(1), waiter); }) != L"nothing";
                early += waiter.way == Wait::patient && !stopped;
            });
            waiter.waits.reach(1);
            if (waiter.way != Wait::patient) waiting.back().join();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
        ++go;
        waiting.clear();
        EXPECT_EQ(early, 0) << order;
        EXPECT_EQ(gaveUp, std::ranges::count(waiters, Wait::thrown, &TestWaiter::way));
    }
}

// The inserts leave one wake behind, which alone would not lead to the third task.
TEST_F(SchedulerTest, WhatProcessTasksThrowsIsDiscardedAndTheQueueGoesOn) {
    Tally go;
    auto const fail = [&] {
        go.reach(1);
        throw std::runtime_error{"cannot work"};
    };
    TestTask first{1, fail}, second{2, fail}, next{3};
    scheduler_.insertAndReach(first);
    scheduler_.insert(second);
    scheduler_.insert(next);
    ++go;
    next.running.reach(1);
    scheduler_.interrupt();
    next.aborted.reach(1);
    EXPECT_TRUE(scheduler_.finish(waiter_));
    EXPECT_EQ(scheduler_.starts, 1);
}

// What comes in while finish waits: from the task that was aborted, and from whoever waits.
TEST_F(SchedulerTest, FinishDropsWhatIsQueuedUntilItReturnsHoweverItsWaitEnds) {
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
        EXPECT_EQ(thrown([&] { EXPECT_TRUE(scheduler.finish(waiter)); }),
                  way == Wait::thrown ? L"runtime_error: gave up" : L"nothing");
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

TEST_F(SchedulerTest, ATaskThatWaitsForItselfIsToldSoAndDropped) {
    TestTask last{9, [] {}};
    std::function<void()> const waits[] = {[&] { scheduler_.cancel(TestTask::handle(1), waiter_); },
                                           [&] { scheduler_.interrupt(waiter_); }, [&] { scheduler_.finish(waiter_); }};
    std::deque<TestTask> tasks;
    for (auto const& wait : waits)
        scheduler_.insert(tasks.emplace_back(static_cast<int>(tasks.size()) + 1, [&] {
            wait();
            ADD_FAILURE() << "the wait came back";
        }));
    scheduler_.insertAndReach(last);
    EXPECT_TRUE(scheduler_.finish(BoringWaiter{}));
    EXPECT_EQ(waiter_.waits, 0);
    for (TestTask const& task : tasks) EXPECT_TRUE(task.running && !task.aborted);
}

TEST_F(SchedulerTest, AWorkerThatDiedFailsFinishOrIsReportedOnceAndReplaced) {
    scheduler_.exitCode = 3;
    scheduler_.startThread();
    EXPECT_FALSE(scheduler_.finish(waiter_));
    EXPECT_TRUE(scheduler_.finish(waiter_));

    faults::Refuse const box{"MessageBox"};
    scheduler_.startThread();
    scheduler_.starts.reach(2);
    scheduler_.exitCode = 0;
    while (box.refusals() == 0) scheduler_.startThread();  // the system takes a moment to see that the thread has ended
    scheduler_.startThread();
    EXPECT_EQ(box.refusals(), 1);
    EXPECT_TRUE(scheduler_.finish(waiter_));
    EXPECT_EQ(scheduler_.starts, 3);
}

TEST_F(SchedulerTest, WithoutAnEventAThreadOrMemoryThereIsNoWorker) {
    auto const start = [&] {
        int const before = scheduler_.starts;
        scheduler_.startThread();
        scheduler_.finish(waiter_);
        return scheduler_.starts - before;
    };
    // What a worker is given, it frees itself. So that this thread frees it, none starts.
    auto const asksForThread = [&] {
        faults::Refuse const refuse{"_beginthreadex"};
        start();
        return refuse.refusals();
    };
    faults::expectFailures(
        {{"a worker", start, {{"CreateEvent", L"0"}, {"_beginthreadex", L"0"}}}, {"its memory", asksForThread, {}, 2}});
}

/// Reaches the private assignment: an explicit instantiation may name it.
using Assignment = SchedulerBase& (SchedulerBase::*)(SchedulerBase const&);
Assignment assignment();
template <Assignment member>
struct Expose {
    friend Assignment assignment() { return member; }
};
template struct Expose < &SchedulerBase::operator=>;

TEST_F(SchedulerTest, ASchedulerIsNotCopied) {
    EXPECT_EQ(thrown([&] { (scheduler_.*assignment())(scheduler_); }), L"NotImplemented: SchedulerBase operator=()");
}

}
