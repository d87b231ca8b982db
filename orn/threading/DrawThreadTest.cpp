#include "orn/threading/DrawThread.h"

#include "orn/threading/WindowMessage.h"
#include "tests/support/Tally.h"
#include "tests/support/TestWindow.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <thread>

using ORN::Threading::BoringWaiter;

namespace {

HWND window(int number) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7F00 + number)); }

/// What was drawn, in order; of the worker's, to be read when it has ended.
using Log = std::vector<HWND>;

/// Draws until it is aborted or told that it is done; drawn again, it is done.
class TestTask : public DrawTask {
public:
    TestTask(HWND window, Log& log, bool endless = false) : window_{window}, log_{&log}, endless_{endless} {}

    HWND key() const override { return window_; }
    void abort() override { ++aborts; }
    bool run() override {
        log_->push_back(window_);
        int const before = aborts;
        ++runs;
        if (!endless_) return true;
        aborts.reach(before + 1);
        endless_ = false;
        return false;
    }

    Tally runs, aborts;

private:
    HWND window_;
    Log* log_;
    std::atomic<bool> endless_;
};

/// Holds the worker while a test fills the queue.
struct Gate : DrawTask {
    HWND key() const override { return window(0); }
    void abort() override {}
    bool run() override {
        ++inside;
        open.reach(1);
        return true;
    }

    Tally inside, open;
};

class TestThread : public DrawThread {
public:
    ~TestThread() override { end(); }

    using DrawThread::threadName;

    /// Inserts the tasks and waits until the last of them has been run so often.
    void insertAndReach(std::initializer_list<TestTask*> tasks, int times = 1) {
        for (TestTask* task : tasks) insert(*task);
        (*std::prev(tasks.end()))->runs.reach(times);
    }
    /// Queues the tasks while nothing is drawn.
    void insertTogether(std::initializer_list<TestTask*> tasks) {
        Gate gate;
        insert(gate);
        gate.inside.reach(1);
        for (TestTask* task : tasks) insert(*task);
        ++gate.open;
        cancel(window(0), BoringWaiter{});
    }
    bool end() { return finish(BoringWaiter{}); }

private:
    void onThreadStart() override {}
    void onThreadExit() override {}
};

class DrawThreadTest : public testing::Test {
protected:
    Log log_;
    TestThread thread_;
};

TEST_F(DrawThreadTest, ATaskForTheWindowBeingDrawnTakesItsPlaceAndAQueuedOneIsKept) {
    TestTask first{window(1), log_, true}, second{window(1), log_};
    EXPECT_STREQ(thread_.threadName(), "ORN::Draw");
    thread_.insertAndReach({&first});
    thread_.insertAndReach({&second});
    EXPECT_EQ(first.aborts, 1);

    TestTask kept{window(3), log_}, rejected{window(3), log_};
    thread_.insertTogether({&kept, &rejected});
    thread_.end();
    EXPECT_EQ(first.runs, 1) << "the task in progress was not to be resumed";
    EXPECT_EQ(rejected.runs, 0);
}

TEST_F(DrawThreadTest, AnInterruptedTaskIsResumedAndACancelledOneIsNot) {
    TestTask task{window(1), log_, true}, dropped{window(2), log_, true};
    thread_.insertAndReach({&task});
    thread_.interrupt(BoringWaiter{});
    task.runs.reach(2);
    thread_.insertAndReach({&dropped});
    thread_.cancel(window(2), BoringWaiter{});
    thread_.end();
    EXPECT_EQ(dropped.runs, 1);
}

TEST_F(DrawThreadTest, ATaskThatThrowsIsDroppedAndWhoWaitsForItIsTold) {
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
    TestTask next{window(2), log_};
    thread_.insert(failing);
    failing.runs.reach(1);
    thread_.interrupt(BoringWaiter{});
    thread_.insertAndReach({&next});
    thread_.end();
    EXPECT_EQ(failing.runs, 1);
}

TEST_F(DrawThreadTest, QueuedWindowsThatAreGoneWaitForTheNextWake) {
    TestTask a{window(1), log_}, b{window(2), log_}, again{window(1), log_};
    thread_.insertTogether({&a, &b});
    EXPECT_EQ(a.runs + b.runs, 0);
    thread_.cancel(window(2));
    thread_.insert(again);  // a is still queued; the wake finds it alone
    a.runs.reach(1);
    thread_.end();
    EXPECT_EQ(b.runs + again.runs, 0);
}

TEST_F(DrawThreadTest, TheFrontMostQueuedWindowIsDrawnNext) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back, middle, front;
    TestWindow const child{&back};
    TestTask drawBack{back.handle(), log_}, drawMiddle{middle.handle(), log_}, drawFront{front.handle(), log_},
        drawChild{child.handle(), log_};
    thread_.insertTogether({&drawBack, &drawMiddle, &drawFront, &drawChild});
    drawBack.runs.reach(1);
    thread_.end();
    EXPECT_EQ(log_, (Log{front.handle(), middle.handle(), child.handle(), back.handle()}));
}

TEST_F(DrawThreadTest, AWindowAboveInterruptsTheDrawingAndOneBelowDoesNot) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow back, middle, front;
    TestTask drawMiddle{middle.handle(), log_, true}, drawBack{back.handle(), log_}, drawFront{front.handle(), log_};
    thread_.insertAndReach({&drawMiddle});
    thread_.insert(drawBack);
    thread_.updateActive(middle.handle());  // it is not queued
    EXPECT_EQ(drawMiddle.aborts, 0);
    thread_.insert(drawFront);
    drawBack.runs.reach(1);
    thread_.end();
    EXPECT_EQ(log_, (Log{middle.handle(), front.handle(), middle.handle(), back.handle()}));

    log_.clear();
    TestTask longFront{front.handle(), log_, true}, again{back.handle(), log_};
    thread_.insertAndReach({&longFront});
    thread_.insert(again);
    EXPECT_EQ(longFront.aborts, 0);
    back.raise();
    thread_.updateActive(back.handle());
    longFront.runs.reach(2);
    thread_.end();
    EXPECT_EQ(log_, (Log{front.handle(), back.handle(), front.handle()}));
}

TEST_F(DrawThreadTest, ThousandsOfRoundsAgainstABusyWorker) {
    struct Brief : DrawTask {
        HWND key() const override { return window(1); }
        void abort() override { ++aborts; }
        bool run() override { return ++runs % 3 != 0; }
        std::atomic<int> runs = 0, aborts = 0;
    } tasks[3];
    auto const runs = [&] { return tasks[0].runs + tasks[1].runs + tasks[2].runs; };

    auto const work = [&](unsigned int seed) {
        std::mt19937 random{seed};
        for (int round = 0; round < 2500; ++round) {
            switch (random() % 32) {
                case 0: thread_.cancel(window(1), BoringWaiter{}); break;
                case 1: thread_.interrupt(BoringWaiter{}); break;
                case 2: thread_.interrupt(); break;
                case 3: thread_.cancel(window(2)); break;
                case 4: thread_.updateActive(window(1)); break;
                default: {
                    int const before = runs();
                    thread_.insert(tasks[random() % 3]);
                    for (int spins = 0; spins < 20 && runs() == before; ++spins) std::this_thread::yield();
                }
            }
        }
    };
    { std::jthread const one{work, 1}, other{work, 2}; }
    {
        std::jthread const other{work, 3};
        for (int round = 0; round < 100; ++round) EXPECT_TRUE(thread_.end());
    }
    // However the last finish met the last insert, the next task is run.
    int const before = runs();
    thread_.insert(tasks[0]);
    while (runs() == before) std::this_thread::yield();
    EXPECT_TRUE(thread_.end());
    EXPECT_GT(runs(), 100);
}

TEST(WindowMessage, AllBitsOfTheParametersArriveAndAWindowThatIsGoneIsAnError) {
    EXPECT_EQ(
        thrown([] { ORN::OrnPostMessage(window(0), 0x8123, 0, 0); }),
        L"WinError: Error \"" + formatMessage(DWORD{1400}, static_cast<wchar_t*>(nullptr)) + L"\" calling PostMessage");
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow shown;
    ORN::OrnPostMessage(shown.handle(), 0x8123, 0xFEDCBA9876543210u, -0x123456789ABCDEF0);
    auto const message = shown.nextMessage();
    ASSERT_TRUE(message.has_value());
    EXPECT_EQ(message->number, 0x8123u);
    EXPECT_EQ(message->wParam, 0xFEDCBA9876543210u);
    EXPECT_EQ(message->lParam, -0x123456789ABCDEF0);
}

}
