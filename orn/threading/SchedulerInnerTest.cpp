#include "orn/threading/Scheduler.h"

#include "orn/os/Waitable.h"
#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"

#include <thread>

using namespace ORN::Threading;

namespace {

/// Its workers end with an exit code of the test's, or go on.
class DyingScheduler : public SchedulerBase {
public:
    explicit DyingScheduler(DWORD code) : SchedulerBase{0}, exitCode{code} {}
    ~DyingScheduler() override { finish(BoringWaiter{}); }

    using SchedulerBase::startThread;
    using SchedulerBase::wakeEvent;

    std::atomic<DWORD> exitCode;
    std::atomic<int> starts = 0, deaths = 0;

private:
    void onThreadStart() override {
        ++starts;
        DWORD const code = exitCode;
        if (code == 0) return;
        ++deaths;
        ORN::os::exitThread(code);
    }
    void onThreadExit() override {}
    void processTasks() override {}
    void eraseWholeQueue() override {}
    char const* threadName() const override { return "dying worker"; }
    TaskBase* taskInProgress() const override { return nullptr; }
};

/// Reaches the private assignment: an explicit instantiation may name it.
using Assignment = SchedulerBase& (SchedulerBase::*)(SchedulerBase const&);
Assignment assignment();
template <Assignment member>
struct Expose {
    friend Assignment assignment() { return member; }
};
template struct Expose < &SchedulerBase::operator=>;

TEST(SchedulerInside, ASchedulerIsNotCopied) {
    DyingScheduler a{0}, b{0};
    EXPECT_EQ(thrown([&] { (a.*assignment())(b); }), L"NotImplemented: SchedulerBase operator=()");
}

TEST(SchedulerInside, AnExitCodeThatIsNotZeroIsAFailedFinish) {
    DyingScheduler scheduler{3};
    scheduler.startThread();
    EXPECT_FALSE(scheduler.finish(BoringWaiter{}));
    EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
}

TEST(SchedulerInside, AWorkerThatDiedIsReportedOnceAndReplaced) {
    faults::Refuse const box{"MessageBox"};
    DyingScheduler scheduler{3};
    scheduler.startThread();
    while (scheduler.deaths == 0) std::this_thread::yield();
    scheduler.exitCode = 0;
    while (box.refusals() == 0) scheduler.startThread();  // the system takes a moment to see that the thread has ended
    EXPECT_EQ(box.refusals(), 1);
    scheduler.startThread();
    EXPECT_EQ(box.refusals(), 1);
    EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
    EXPECT_EQ(scheduler.starts, 2);
}

TEST(SchedulerInside, WithoutAnEventOrAThreadThereIsNoWorker) {
    DyingScheduler scheduler{0};
    {
        faults::Refuse const refuse{"CreateEvent"};
        scheduler.startThread();
        EXPECT_EQ(scheduler.wakeEvent(), nullptr);
    }
    long const blocks = faults::liveBlocks();
    for (long number = 0;; ++number) {
        faults::AllocationFails const fails{number};
        faults::Refuse const refuse{"_beginthreadex"};
        scheduler.startThread();
        EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
        EXPECT_EQ(faults::liveBlocks(), blocks);
        if (!fails.happened()) break;
    }
    EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
    EXPECT_EQ(scheduler.starts, 0);
    scheduler.startThread();
    EXPECT_TRUE(scheduler.finish(BoringWaiter{}));
    EXPECT_EQ(scheduler.starts, 1);
}

}
