#include "orn/threading/DrawThread.h"

#include "tests/support/Tally.h"
#include "tests/support/TestWindow.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

using ORN::Threading::BoringWaiter;

namespace {

/// What was drawn, in order.
class Log {
public:
    void add(HWND window) {
        std::lock_guard const lock{mutex_};
        windows_.push_back(window);
    }
    std::vector<HWND> windows() const {
        std::lock_guard const lock{mutex_};
        return windows_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<HWND> windows_;
};

/// Draws until it is aborted or told that it is done; drawn again, it is done.
class TestTask : public DrawTask {
public:
    TestTask(HWND window, Log& log, bool endless = false) : window_{window}, log_{&log}, endless_{endless} {}

    HWND key() const override { return window_; }
    void abort() override { ++aborts; }
    bool run() override {
        log_->add(window_);
        int const before = aborts;
        ++runs;
        if (!endless_) return true;
        aborts.reach(before + 1);
        endless_ = false;
        return false;
    }
    void waitUntilRunning(int times = 1) const { runs.reach(times); }

    Tally runs, aborts;

private:
    HWND window_;
    Log* log_;
    std::atomic<bool> endless_;
};

class TestThread : public DrawThread {
public:
    ~TestThread() override { finish(BoringWaiter{}); }

    using DrawThread::threadName;

private:
    void onThreadStart() override {}
    void onThreadExit() override {}
};

HWND window(int number) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7F00 + number)); }

/// Holds the worker while a test fills the queue.
struct Gate : DrawTask {
    HWND key() const override { return window(0); }
    void abort() override {}
    bool run() override {
        ++inside;
        open.reach(1);
        return true;
    }
    void letGo() { ++open; }

    Tally inside, open;
};

TEST(DrawThread, ATaskForTheWindowBeingDrawnTakesItsPlace) {
    Log log;
    TestTask first{window(1), log, true}, second{window(1), log};
    TestThread thread;
    EXPECT_STREQ(thread.threadName(), "ORN::Draw");
    thread.insert(first);
    first.waitUntilRunning();
    thread.insert(second);
    second.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(first.aborts, 1);
    EXPECT_EQ(first.runs, 1) << "the task in progress was not to be resumed";
}

TEST(DrawThread, AQueuedTaskIsKeptAndACancelledOneIsNotRun) {
    Log log;
    Gate gate;
    TestTask kept{window(1), log}, rejected{window(1), log}, cancelled{window(2), log};
    TestThread thread;
    thread.insert(gate);
    gate.inside.reach(1);
    thread.insert(cancelled);
    thread.cancel(window(2));
    thread.insert(kept);
    thread.insert(rejected);
    gate.letGo();
    kept.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(rejected.runs + cancelled.runs, 0);
}

TEST(DrawThread, AnInterruptedTaskIsResumedAndACancelledOneIsNot) {
    Log log;
    TestTask task{window(1), log, true};
    TestThread thread;
    thread.insert(task);
    task.waitUntilRunning();
    thread.interrupt(BoringWaiter{});
    task.waitUntilRunning(2);

    TestTask dropped{window(2), log, true};
    thread.insert(dropped);
    dropped.waitUntilRunning();
    thread.cancel(window(2), BoringWaiter{});
    thread.finish(BoringWaiter{});
    EXPECT_EQ(dropped.runs, 1);
}

TEST(DrawThread, ATaskThatThrowsIsDroppedAndWhoWaitsForItIsTold) {
    struct Failing : DrawTask {
        HWND key() const override { return window(1); }
        void abort() override { ++aborted; }
        bool run() override {
            ++runs;
            aborted.reach(1);
            throw std::runtime_error{"cannot draw"};
        }
        Tally runs, aborted;
    } failing;
    Log log;
    TestTask next{window(2), log};
    TestThread thread;
    thread.insert(failing);
    failing.runs.reach(1);
    thread.interrupt(BoringWaiter{});
    thread.insert(next);
    next.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(failing.runs, 1);
}

TEST(DrawThread, QueuedWindowsThatAreGoneWaitForTheNextWake) {
    Log log;
    Gate gate;
    TestTask a{window(1), log}, b{window(2), log};
    TestThread thread;
    thread.insert(gate);
    gate.inside.reach(1);
    thread.insert(a);
    thread.insert(b);
    gate.letGo();
    thread.cancel(window(0), BoringWaiter{});
    EXPECT_EQ(a.runs + b.runs, 0);
    thread.cancel(window(2));
    TestTask again{window(1), log};
    thread.insert(again);  // a is still queued; the wake finds it alone
    a.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(b.runs + again.runs, 0);
}

TEST(DrawThread, TheFrontMostQueuedWindowIsDrawnNext) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back, middle, front;
    TestWindow const child{&back};
    Log log;
    Gate gate;
    TestTask drawBack{back.handle(), log}, drawMiddle{middle.handle(), log}, drawFront{front.handle(), log},
        drawChild{child.handle(), log};
    TestThread thread;
    thread.insert(gate);
    gate.inside.reach(1);
    for (TestTask* task : {&drawBack, &drawMiddle, &drawFront, &drawChild}) thread.insert(*task);
    gate.letGo();
    drawBack.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(log.windows(), (std::vector{front.handle(), middle.handle(), child.handle(), back.handle()}));
}

TEST(DrawThread, AWindowAboveInterruptsTheDrawingAndOneBelowDoesNot) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back, middle, front;
    Log log;
    TestTask drawMiddle{middle.handle(), log, true}, drawBack{back.handle(), log}, drawFront{front.handle(), log};
    TestThread thread;
    thread.insert(drawMiddle);
    drawMiddle.waitUntilRunning();
    thread.insert(drawBack);
    thread.updateActive(middle.handle());  // it is not queued
    EXPECT_EQ(drawMiddle.aborts, 0);
    thread.insert(drawFront);
    drawBack.waitUntilRunning();
    thread.finish(BoringWaiter{});
    EXPECT_EQ(log.windows(), (std::vector{middle.handle(), front.handle(), middle.handle(), back.handle()}));

    Log later;
    TestTask longFront{front.handle(), later, true}, again{back.handle(), later};
    thread.insert(longFront);
    longFront.waitUntilRunning();
    thread.insert(again);
    EXPECT_EQ(longFront.aborts, 0);
    back.raise();
    thread.updateActive(back.handle());
    longFront.waitUntilRunning(2);
    thread.finish(BoringWaiter{});
    EXPECT_EQ(later.windows(), (std::vector{front.handle(), back.handle(), front.handle()}));
}

TEST(DrawThread, TenThousandRoundsAgainstABusyWorker) {
    struct Brief : DrawTask {
        HWND key() const override { return window(1); }
        void abort() override { ++aborts; }
        bool run() override { return ++runs % 3 != 0; }
        std::atomic<int> runs = 0, aborts = 0;
    } tasks[3];
    auto const runs = [&] { return tasks[0].runs + tasks[1].runs + tasks[2].runs; };

    TestThread thread;
    auto const work = [&](unsigned int seed) {
        std::mt19937 random{seed};
        for (int round = 0; round < 2500; ++round) {
            switch (random() % 32) {
                case 0: thread.cancel(window(1), BoringWaiter{}); break;
                case 1: thread.interrupt(BoringWaiter{}); break;
                case 2: thread.interrupt(); break;
                case 3: thread.cancel(window(2)); break;
                case 4: thread.updateActive(window(1)); break;
                default: {
                    int const before = runs();
                    thread.insert(tasks[random() % 3]);
                    for (int spins = 0; spins < 20 && runs() == before; ++spins) std::this_thread::yield();
                }
            }
        }
    };
    for (unsigned int part = 0; part < 2; ++part) {
        {
            std::jthread const other{work, 2 * part};
            work(2 * part + 1);
        }
        EXPECT_TRUE(thread.finish(BoringWaiter{}));
    }
    {
        std::jthread const other{work, 4};
        for (int round = 0; round < 100; ++round) EXPECT_TRUE(thread.finish(BoringWaiter{}));
    }
    // However the last finish met the last insert, the next task is run.
    int const before = runs();
    thread.insert(tasks[0]);
    while (runs() == before) std::this_thread::yield();
    EXPECT_TRUE(thread.finish(BoringWaiter{}));
    EXPECT_GT(runs(), 100);
}

}
