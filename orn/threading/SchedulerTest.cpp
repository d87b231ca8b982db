#include "orn/threading/Scheduler.h"

#include "orn/os/Waitable.h"
#include "orn/threading/ThreadName.h"
#include "tests/support/Faults.h"
#include "tests/support/TestThread.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>
#include <fstream>
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

/// Expects a name of the calling thread. On Windows only a debugger learns it.
void expectName(std::string const& expected) {
    std::ifstream file{"/proc/thread-self/comm"};
    std::string name;
    bool const known = std::filesystem::path::preferred_separator == L'/' && std::getline(file, name);
    EXPECT_TRUE(!known || name == expected) << name;
}

/// The scheduler is the library's own, the draw thread.
class SchedulerTest : public testing::Test {
protected:
    TestThread thread_;
    TestWaiter waiter_;
};

TEST_F(SchedulerTest, AWorkerStartsWithTheFirstTaskAndEndsWithFinish) {
    thread_.atStart = [] { expectName("ORN::Draw"); };
    EXPECT_TRUE(thread_.finish(waiter_));
    thread_.interrupt(waiter_);
    thread_.cancel(window(1), waiter_);
    EXPECT_EQ(waiter_.waits, 0);
    waiter_.meanwhile = [&] {
        EXPECT_EQ(thrown([&] { thread_.end(); }), L"logic_error: finish waits for the worker already");
    };
    for (int round = 1; round <= 3; ++round) {
        TestTask endless{window(1), [](TestTask& task) { return task.aborts.reach(1), false; }};
        thread_.insertAndReach(endless);
        EXPECT_TRUE(thread_.finish(waiter_));
        EXPECT_EQ(endless.runs, 1);
        EXPECT_TRUE(thread_.starts == round && thread_.exits == round && waiter_.waits == round);
    }
    EXPECT_EQ(BoringWaiter{}(nullptr), 0xFFFFFFFFu) << "nothing to wait for is a failure and no endless wait";
}

TEST_F(SchedulerTest, CancelDropsByKeyAndWaitsOnlyForThatKeysTask) {
    Tally go;
    TestTask running{window(1), [&](TestTask&) { return go.reach(1), false; }};
    TestTask other{window(2), [](TestTask&) { return true; }};
    thread_.insertAndReach(running);
    thread_.insert(other);
    int const before = running.aborts;
    thread_.cancel(window(2), waiter_);
    EXPECT_TRUE(running.aborts == before && waiter_.waits == 0);

    waiter_.meanwhile = [&] {
        thread_.cancel(window(3));  // needs the lock, which is not held meanwhile
        ++go;
    };
    thread_.cancel(window(1), waiter_);
    EXPECT_TRUE(running.aborts == before + 1 && waiter_.waits == 1);
    EXPECT_TRUE(running.runs == 1 && other.runs == 0);
}

// Four threads begin to wait, one after the other. A thread that gives up has left before the next one comes. Each thread
// ends its wait in one of the four ways, in every combination.
TEST_F(SchedulerTest, APatientWaitEndsWhenTheTaskHasStoppedWhateverOtherWaitsDo) {
    for (std::size_t order = 0; order < 256; ++order) {
        Tally go;
        std::atomic<bool> stopped = false;
        TestTask running{window(1), [&](TestTask&) { return go.reach(1), stopped = true; }};
        thread_.insertAndReach(running);
        std::vector<std::jthread> waiting;
        std::deque<TestWaiter> waiters;
        std::atomic<int> early = 0, gaveUp = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            TestWaiter& waiter = waiters.emplace_back(everyWait[order >> 2 * i & 3]);
            waiting.emplace_back([&] {
                gaveUp += thrown([&] { thread_.cancel(window(1), waiter); }) != L"nothing";
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
        thread_.end();
    }
}

// While finish waits, tasks are queued by the task that it has aborted, and by the waiter.
TEST_F(SchedulerTest, FinishDropsWhatIsQueuedUntilItReturnsHoweverItsWaitEnds) {
    for (Wait const way : everyWait) {
        Tally queuedMore, open;
        std::atomic<int> running = 0;
        TestThread thread;
        auto const never = [](TestTask&) { return ADD_FAILURE() << "it was dropped", true; };
        TestTask late[3]{{window(2), never}, {window(3), never}, {window(4), never}};
        TestTask first{window(1), [&](TestTask& task) {
                           ++running;
                           task.aborts.reach(1);
                           thread.insert(late[0]);
                           thread.insert(late[1]);
                           ++queuedMore;
                           open.reach(1);
                           --running;
                           return true;
                       }};
        TestTask next{window(5), [&](TestTask&) {
                          EXPECT_EQ(running, 0) << "two tasks run at once";
                          return true;
                      }};
        TestWaiter waiter{way};
        waiter.meanwhile = [&] {
            queuedMore.reach(1);
            thread.insert(late[2]);
            if (way == Wait::patient) ++open;
        };
        thread.insertAndReach(first);
        EXPECT_EQ(thrown([&] { EXPECT_TRUE(thread.finish(waiter)); }),
                  way == Wait::thrown ? L"runtime_error: gave up" : L"nothing");
        EXPECT_EQ(thread.starts, 1);
        EXPECT_EQ(thread.exits, way == Wait::patient ? 1 : 0);

        bool const usedAgain = way != Wait::failed;
        if (usedAgain) thread.insert(next), thread.insert(next);
        ++open;
        if (usedAgain) next.runs.reach(1);
        EXPECT_TRUE(thread.end());
        EXPECT_EQ(thread.starts, usedAgain ? 2 : 1);
        EXPECT_EQ(thread.exits, thread.starts) << "finish waits for a worker that it gave up before, too";
    }
}

// A task that is queued for the same window stays queued. Where finish has left the worker alone, a second one waits for it.
TEST_F(SchedulerTest, ATaskThatWaitsForItsOwnWorkerIsRefused) {
    for (bool const leftAlone : {false, true}) {
        TestWaiter const hasty{Wait::timedOut};
        Tally go, drawn;
        auto const draw = [&](TestTask&) { return ++drawn > 0; };
        TestTask next{window(1), draw}, last{window(1), draw};
        TestTask task{window(1), [&](TestTask& self) {
                          go.reach(1);
                          int const before = self.aborts;
                          std::function<void()> const waits[] = {[&] { thread_.cancel(self.window, hasty); },
                                                                 [&] { thread_.interrupt(hasty); },
                                                                 [&] { thread_.finish(hasty); }};
                          for (auto const& wait : waits)
                              EXPECT_EQ(thrown(wait), L"logic_error: a scheduler's worker cannot wait for itself");
                          EXPECT_EQ(self.aborts, before);
                          thread_.insert(last);  // stored only where the next one is lost
                          return true;
                      }};
        thread_.insertAndReach(task);
        if (leftAlone) thread_.finish(hasty);
        thread_.insert(next);
        ++go;
        drawn.reach(1);
        EXPECT_EQ(next.runs, 1);
        EXPECT_TRUE(thread_.end());
        EXPECT_EQ(hasty.waits, leftAlone ? 1 : 0);
    }
}

TEST_F(SchedulerTest, AWorkerThatDiedFailsFinishOrIsReportedOnceAndReplaced) {
    std::atomic<bool> dies = true;
    Tally died;
    thread_.atStart = [&] {
        if (!dies) return;
        ++died;
        ORN::os::exitThread(3);
    };
    thread_.startThread();
    EXPECT_FALSE(thread_.end());
    EXPECT_TRUE(thread_.end());

    faults::Refuse const box{"MessageBox"};
    thread_.startThread();
    died.reach(2);
    dies = false;
    while (box.refusals() == 0) thread_.startThread();  // the system takes a moment to see that the thread has ended
    thread_.startThread();
    EXPECT_EQ(box.refusals(), 1);
    EXPECT_TRUE(thread_.end());
    EXPECT_EQ(thread_.starts, 3);
}

TEST_F(SchedulerTest, WithoutAnEventAThreadOrMemoryThereIsNoWorker) {
    auto const start = [&] {
        int const before = thread_.starts;
        thread_.startThread();
        thread_.end();
        return thread_.starts - before;
    };
    // What a worker is given, it frees itself. So that this thread frees it, none starts.
    auto const asksForThread = [&] {
        faults::Refuse const refuse{"_beginthreadex"};
        start();
        return refuse.refusals();
    };
    faults::expectFailures(
        {{"a worker", start, {{"CreateEvent", L"0"}, {"_beginthreadex", L"0"}}}, {"its memory", asksForThread, {}, 2}});

    // A task that no worker could take is dropped; otherwise two windows that are gone would wait for the next wake.
    auto const draw = [](TestTask&) { return true; };
    TestTask dropped{window(1), draw}, next{window(2), draw};
    {
        faults::Refuse const refuse{"_beginthreadex"};
        thread_.insert(dropped);
    }
    thread_.end();
    thread_.insertAndReach(next);
    thread_.end();
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
    EXPECT_EQ(thrown([&] { (thread_.*assignment())(thread_); }), L"NotImplemented: SchedulerBase operator=()");
}

TEST(ThreadName, IsCutToWhatTheSystemTakesAndAThreadRunsOnWhateverNameItIsGiven) {
    std::jthread const named{[] {
        ORN::setThreadName("", 0xFFFFFFFF);
        ORN::setThreadName("nobody", 0x7FFFFFFF);
        ORN::setThreadName("orn-test-thread that is cut", 0xFFFFFFFF);
        expectName("orn-test-thread");
    }};
}

}
