/// A draw thread and tasks for it, for tests.
#pragma once

#include "orn/threading/DrawThread.h"
#include "tests/support/Tally.h"

#include <cstdint>
#include <functional>
#include <utility>

/// A window that is not on the screen.
inline HWND window(int number) { return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7F00 + number)); }

/// Does what it is given, and is complete when that returns true.
struct TestTask : DrawTask {
    TestTask(HWND drawn, std::function<bool(TestTask&)> does) : window{drawn}, body{std::move(does)} {}

    HWND key() const override { return window; }
    void abort() override { ++aborts; }
    bool run() override {
        ++runs;
        return body(*this);
    }

    HWND const window;
    std::function<bool(TestTask&)> const body;
    Tally runs, aborts;
};

class TestThread : public DrawThread {
public:
    ~TestThread() override { end(); }

    using DrawThread::startThread;
    using DrawThread::threadName;

    void insertAndReach(TestTask& task) {
        insert(task);
        task.runs.reach(1);
    }
    bool end() { return finish(ORN::Threading::BoringWaiter{}); }

    Tally starts, exits;                    ///< of workers
    std::function<void()> atStart = [] {};  ///< on a worker that has started

private:
    void onThreadStart() override {
        ++starts;
        atStart();
    }
    void onThreadExit() override { ++exits; }
};
