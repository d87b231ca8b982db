#include "orn/threading/DrawThread.h"

#include "orn/threading/WindowMessage.h"
#include "tests/support/Faults.h"
#include "tests/support/TestThread.h"
#include "tests/support/TestWindow.h"

#include <optional>
#include <random>
#include <thread>

using ORN::Threading::BoringWaiter;

namespace {

/// What was drawn, in order; of the worker's, to be read when it has ended.
using Log = std::vector<HWND>;

class DrawThreadTest : public testing::Test {
protected:
    /// Draws a window at once.
    TestTask drawing(HWND drawn) {
        return {drawn, [this](TestTask& task) { return log_.push_back(task.window), true; }};
    }
    /// Is aborted in its first run, and complete in its second.
    TestTask longDrawing(HWND drawn) {
        return {drawn, [this](TestTask& task) {
                    log_.push_back(task.window);
                    task.aborts.reach(1);
                    return task.runs > 1;
                }};
    }

    /// Queues the tasks while nothing is drawn.
    void insertTogether(std::initializer_list<TestTask*> tasks) {
        Tally open;
        TestTask gate{window(0), [&](TestTask&) { return open.reach(1), true; }};
        thread_.insertAndReach(gate);
        for (TestTask* task : tasks) thread_.insert(*task);
        ++open;
        thread_.cancel(gate.window, BoringWaiter{});
    }

    Log log_;
    TestThread thread_;
};

/// With windows on the screen, which tell their order.
class DrawThreadOnScreenTest : public DrawThreadTest {
protected:
    void SetUp() override {
        if (!TestWindow::possible()) GTEST_SKIP() << "no display";
        for (auto* shown : {&back_, &middle_, &front_}) shown->emplace();
    }

    std::optional<TestWindow> back_, middle_, front_;
};

TEST_F(DrawThreadTest, ATaskForTheWindowBeingDrawnTakesItsPlaceAndAQueuedOneIsKept) {
    TestTask first = longDrawing(window(1)), second = drawing(window(1));
    EXPECT_STREQ(thread_.threadName(), "ORN::Draw");
    thread_.insertAndReach(first);
    thread_.insertAndReach(second);
    EXPECT_EQ(first.aborts, 1);

    TestTask kept = drawing(window(3)), rejected = drawing(window(3));
    insertTogether({&kept, &rejected});
    kept.runs.reach(1);
    thread_.end();
    EXPECT_EQ(log_, (Log{window(1), window(1), window(3)})) << "the task in progress was not to be resumed";
    EXPECT_EQ(rejected.runs, 0);
}

// Also when the cancelled one ends by throwing, and whatever the flag was when the interrupted one began.
TEST_F(DrawThreadTest, AnInterruptedTaskIsResumedAndACancelledOneIsNot) {
    for (bool const throws : {false, true}) {
        TestTask cancelled{window(2), [&](TestTask& task) {
                               task.aborts.reach(2);
                               if (throws) throw std::runtime_error{"cannot draw"};
                               return false;
                           }};
        TestTask interrupted = longDrawing(window(1));
        thread_.insertAndReach(cancelled);
        thread_.insert(interrupted);  // it aborts the other, as windows that are gone count as above
        thread_.cancel(window(2), BoringWaiter{});
        interrupted.runs.reach(1);
        thread_.interrupt(BoringWaiter{});
        interrupted.runs.reach(2);
        thread_.end();
        EXPECT_EQ(cancelled.runs, 1);
    }
}

TEST_F(DrawThreadTest, QueuedWindowsThatAreGoneWaitForTheNextWake) {
    TestTask a = drawing(window(1)), b = drawing(window(2)), again = drawing(window(1));
    insertTogether({&a, &b});
    EXPECT_EQ(a.runs + b.runs, 0);
    thread_.cancel(window(2));
    thread_.insert(again);  // a is still queued; the wake finds it alone
    a.runs.reach(1);
    thread_.end();
    EXPECT_EQ(b.runs + again.runs, 0);
}

TEST_F(DrawThreadOnScreenTest, TheFrontMostQueuedWindowIsDrawnNext) {
    TestWindow const child{&*back_};
    TestTask drawBack = drawing(back_->handle()), drawMiddle = drawing(middle_->handle()),
             drawFront = drawing(front_->handle()), drawChild = drawing(child.handle());
    insertTogether({&drawBack, &drawMiddle, &drawFront, &drawChild});
    drawBack.runs.reach(1);
    thread_.end();
    EXPECT_EQ(log_, (Log{front_->handle(), middle_->handle(), child.handle(), back_->handle()}));
}

// The inserts leave one wake behind, which alone would not lead to the third task.
TEST_F(DrawThreadOnScreenTest, AfterTasksThatThrowTheQueueGoesOn) {
    auto const fail = [](TestTask&) -> bool { throw std::runtime_error{"cannot draw"}; };
    TestTask first{front_->handle(), fail}, second{middle_->handle(), fail}, third = drawing(back_->handle());
    insertTogether({&first, &second, &third});
    third.runs.reach(1);
    thread_.end();
    EXPECT_TRUE(first.runs == 1 && second.runs == 1 && thread_.starts == 1);
}

TEST_F(DrawThreadOnScreenTest, AWindowAboveInterruptsTheDrawingAndOneBelowDoesNot) {
    HWND const back = back_->handle(), middle = middle_->handle(), front = front_->handle();
    TestTask drawMiddle = longDrawing(middle), drawBack = drawing(back), drawFront = drawing(front);
    thread_.insertAndReach(drawMiddle);
    thread_.insert(drawBack);
    thread_.updateActive(middle);  // it is not queued
    EXPECT_EQ(drawMiddle.aborts, 0);
    thread_.insert(drawFront);
    drawBack.runs.reach(1);
    thread_.end();
    EXPECT_EQ(std::exchange(log_, {}), (Log{middle, front, middle, back}));

    TestTask longFront = longDrawing(front), again = drawing(back);
    thread_.insertAndReach(longFront);
    thread_.insert(again);
    EXPECT_EQ(longFront.aborts, 0);
    back_->raise();
    thread_.updateActive(back);
    longFront.runs.reach(2);
    thread_.end();
    EXPECT_EQ(log_, (Log{front, back, front}));
}

TEST_F(DrawThreadOnScreenTest, AnInsertAsksTheServerThreeTimes) {
    auto const wait = [](TestTask& task) { return task.aborts.reach(1), true; };
    TestTask running{middle_->handle(), wait}, above{front_->handle(), wait}, below{back_->handle(), wait};
    thread_.insertAndReach(running);
    for (TestTask* const task : {&below, &above}) {
        faults::Refuse const refuse{"QueryTree", 3};
        thread_.insert(*task);
        EXPECT_EQ(refuse.refusals(), 0);
        EXPECT_EQ(running.aborts, task == &above ? 1 : 0);
    }
    thread_.end();
}

TEST_F(DrawThreadTest, WithoutMemoryAnInsertChangesNothingAndAnInterruptedTaskIsResumed) {
    Tally go;
    std::optional<faults::AllocationFails> fails;  // on the worker, from the end of one run to the next
    TestTask running{window(1), [&](TestTask& task) {
                         fails.reset();
                         go.reach(task.runs);
                         if (task.runs == 1) fails.emplace(0);
                         return task.runs == 2;
                     }};
    TestTask same = drawing(window(1)), above = drawing(window(2));
    thread_.insertAndReach(running);
    auto const insertAbove = [&] { thread_.insert(above); };
    EXPECT_GE(faults::failEveryAllocation(insertAbove, [&](bool) { EXPECT_EQ(running.aborts, 0); }), 1);
    thread_.cancel(window(2));
    ++go;
    running.runs.reach(2);
    {
        faults::AllocationFails const noMemory{0};
        EXPECT_THROW(thread_.insert(same), std::bad_alloc);
    }
    ++go;
    thread_.end();
    EXPECT_EQ(same.runs, 0);
}

TEST_F(DrawThreadTest, ThousandsOfRoundsAgainstABusyWorker) {
    auto const draw = [](TestTask& task) { return task.runs % 3 != 0; };
    TestTask tasks[3]{{window(1), draw}, {window(1), draw}, {window(1), draw}};
    auto const work = [&](unsigned int seed) {
        std::mt19937 random{seed};
        for (int round = 0; round < 2500; ++round) {
            switch (random() % 32) {
                case 0: thread_.cancel(window(1), BoringWaiter{}); break;
                case 1: thread_.interrupt(BoringWaiter{}); break;
                case 2: thread_.interrupt(); break;
                case 3: thread_.cancel(window(2)); break;
                case 4: thread_.updateActive(window(1)); break;
                default: thread_.insert(tasks[random() % 3]);
            }
            for (auto spins = random() % 20; spins > 0; --spins) std::this_thread::yield();
        }
    };
    { std::jthread const one{work, 1}, other{work, 2}; }
    {
        std::jthread const other{work, 3};
        for (int round = 0; round < 100; ++round) EXPECT_TRUE(thread_.end());
    }
    // However the last finish met the last insert, the next task is run.
    int const before = tasks[0].runs;
    thread_.insert(tasks[0]);
    tasks[0].runs.reach(before + 1);
    EXPECT_TRUE(thread_.end());
    EXPECT_GT(tasks[0].runs + tasks[1].runs + tasks[2].runs, 100);
    EXPECT_TRUE(thread_.starts == thread_.exits && thread_.starts <= 102) << "threads that insert at once start one";
}

TEST(WindowMessage, AllBitsOfTheParametersArriveAndAWindowThatIsGoneIsAnError) {
    EXPECT_EQ(
        thrown([] { ORN::OrnPostMessage(window(0), 0x8123, 0, 0); }),
        L"WinError: Error \"" + formatMessage(DWORD{1400}, static_cast<wchar_t*>(nullptr)) + L"\" calling PostMessage");
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow shown;
    ORN::OrnPostMessage(shown.handle(), 0x8123, 0xFEDCBA9876543210u, -0x123456789ABCDEF0);
    EXPECT_TRUE(shown.receives(0x8123, 0xFEDCBA9876543210u, -0x123456789ABCDEF0));
}

}
