#include "orn/threading/DrawThread.h"

#include "tests/support/Faults.h"
#include "tests/support/Tally.h"
#include "tests/support/TestWindow.h"

#include <optional>

using ORN::Threading::BoringWaiter;

namespace {

struct Task : DrawTask {
    explicit Task(HWND drawn, std::function<bool()> work) : window{drawn}, body{std::move(work)} {}

    HWND key() const override { return window; }
    void abort() override { ++aborts; }
    bool run() override {
        ++runs;
        return body();
    }

    HWND const window;
    std::function<bool()> const body;
    Tally runs, aborts;
};

class Thread : public DrawThread {
public:
    ~Thread() override { finish(BoringWaiter{}); }

private:
    void onThreadStart() override {}
    void onThreadExit() override {}
};

HWND window(int number) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7F00 + number)); }

TEST(DrawThreadFailures, WithoutMemoryAnInsertChangesNothingAndAnInterruptedTaskIsResumed) {
    Tally go;
    std::optional<faults::AllocationFails> fails;  // on the worker, from the end of one run to the next
    Task running{window(1), [&] {
                     fails.reset();
                     go.reach(running.runs);
                     if (running.runs == 1) fails.emplace(0);
                     return running.runs == 2;
                 }};
    Task same{window(1), [] { return true; }}, above{window(2), [] { return true; }};
    Thread thread;
    thread.insert(running);
    running.runs.reach(1);
    EXPECT_GE(faults::failEveryAllocation(
                  [&] {
                      int const before = running.aborts;
                      try {
                          thread.insert(above);
                      } catch (std::bad_alloc const&) {
                          EXPECT_EQ(running.aborts, before);
                          throw;
                      }
                  },
                  [](bool) {}),
              1);
    thread.cancel(window(2));
    ++go;
    running.runs.reach(2);
    {
        faults::AllocationFails const noMemory{0};
        EXPECT_THROW(thread.insert(same), std::bad_alloc);
    }
    ++go;
    thread.cancel(window(1), BoringWaiter{});
    EXPECT_EQ(same.runs, 0);
}

TEST(DrawThreadFailures, AnInsertAsksTheServerThreeTimes) {
    if (!TestWindow::possible()) GTEST_SKIP() << "no display";
    TestWindow const back, middle, front;
    Tally go;
    auto const wait = [&] {
        go.reach(1);
        return true;
    };
    Task running{middle.handle(), wait}, above{front.handle(), wait}, below{back.handle(), wait};
    Thread thread;
    thread.insert(running);
    running.runs.reach(1);
    for (Task* const task : {&below, &above}) {
        faults::Refuse const refuse{"QueryTree", 3};
        thread.insert(*task);
        EXPECT_EQ(refuse.refusals(), 0);
        EXPECT_EQ(running.aborts, task == &above ? 1 : 0);
    }
    ++go;
}

}
