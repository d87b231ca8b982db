#include "orn/threading/Scheduler.h"

#include "orn/foundation/Error.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Locale.h"
#include "orn/os/Waitable.h"
#include "orn/text/Encoding.h"
#include "orn/threading/ThreadName.h"

#include <clocale>
#include <exception>

namespace ORN::Threading {

TaskBase::~TaskBase() = default;

SchedulerBase::SchedulerBase(int priority) noexcept : priority_{priority} {}
SchedulerBase::~SchedulerBase() = default;

SchedulerBase::SchedulerBase(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase copy constructor"}; }
SchedulerBase& SchedulerBase::operator=(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase operator=()"}; }

void SchedulerBase::startThread() {
    ExclusiveLock guard{lockWord_};
    if (worker_ != nullptr) {
        DWORD code = 0;
        if (!os::threadExitCode(worker_, code) || code != os::threadStillActive) {
            if (HANDLE const wake = wakeEvent_.exchange(nullptr)) os::closeHandle(wake);
            os::closeHandle(worker_);
            worker_ = nullptr;
            guard.unlock();
            os::showMessage(L"Thread exited unexpectedly", getWCS(threadName()).c_str());
            guard.lock();
        }
    }
    if (wakeEvent_.load() == nullptr) wakeEvent_.store(os::createEvent());
    if (wakeEvent_.load() == nullptr || worker_ != nullptr) return;

    unsigned int const stackBytes = 0x40000;
    worker_ = os::startThread(threadMain, this, stackBytes);
    if (worker_ != nullptr) os::setThreadPriority(worker_, priority_);
}

unsigned int SchedulerBase::threadMain(void* scheduler) {
    auto& self = *static_cast<SchedulerBase*>(scheduler);
    setThreadName(self.threadName(), 0xFFFFFFFF);
    bool const apartment = os::enterApartment();
    os::threadLocaleMode(os::perThreadLocale);
    os::setLocale(LC_CTYPE, "");

    self.onThreadStart();
    self.serve();
    self.onThreadExit();

    os::threadLocaleMode(os::processLocale);
    if (apartment) os::leaveApartment();
    return 0;
}

void SchedulerBase::serve() {
    // A handle of the worker's own keeps the event until the worker has ended, whatever finish has closed by then.
    struct Share {
        HANDLE field = nullptr;
        HANDLE own = nullptr;
        ~Share() {
            if (own != nullptr) os::closeHandle(own);
        }
    } wake;
    {
        ExclusiveLock const guard{lockWord_};
        wake.field = wakeEvent_.load();
        if (wake.field != nullptr) wake.own = os::shareEvent(wake.field);
    }

    // Another event in the field belongs to the worker that has taken this one's place.
    while (wake.own != nullptr && wakeEvent_.load() == wake.field) {
        if (os::waitFor(wake.own, os::waitForever) != os::waitObject) return;
        for (bool done = false; !done;) {
            try {
                processTasks();
                done = true;
            } catch (std::exception const&) {
                // The task that failed is gone; the others are still to be run.
            }
        }
    }
}

bool SchedulerBase::finish(Waiter const& waiter) {
    {
        ExclusiveLock const guard{lockWord_};
        eraseWholeQueue();
        if (TaskBase* const task = taskInProgress()) {
            cancelled_ = true;
            task->abort();
        }
        if (HANDLE const wake = wakeEvent_.exchange(nullptr)) {
            os::signalEvent(wake);
            os::closeHandle(wake);
        }
    }
    if (worker_ == nullptr) return true;

    os::lendPriority(worker_);  // a worker of low priority would starve beside a waiting thread of higher
    bool result = true;
    if (waiter(worker_) == os::waitObject) {
        DWORD code = 0;
        result = os::threadExitCode(worker_, code) && code == 0;
    }
    os::closeHandle(worker_);
    worker_ = nullptr;
    return result;
}

void SchedulerBase::interrupt() {
    ExclusiveLock guard{lockWord_};
    if (taskInProgress() != nullptr) doCancelCurrentTask(guard, false, nullptr);
}

void SchedulerBase::interrupt(Waiter const& waiter) {
    ExclusiveLock guard{lockWord_};
    if (taskInProgress() != nullptr) doCancelCurrentTask(guard, false, &waiter);
}

void SchedulerBase::doCancelCurrentTask(ExclusiveLock& guard, bool setCancelled, Waiter const* waiter) {
    if (setCancelled) cancelled_ = true;
    taskInProgress()->abort();
    if (waiter != nullptr) waitForTask(guard, *waiter);
}

void SchedulerBase::waitForTask(ExclusiveLock& guard, Waiter const& waiter) {
    HANDLE const mine = os::createEvent();
    if (mine == nullptr) throw WinError{L"CreateEvent", os::lastError()};

    // One field serves all who wait: the latest takes it and, when the task has stopped, tells the one before.
    HANDLE const before = stopEvent_ != nullptr ? os::shareEvent(stopEvent_) : nullptr;
    stopEvent_ = mine;

    struct Close {
        SchedulerBase& scheduler;
        ExclusiveLock& guard;
        HANDLE mine, before;
        ~Close() {
            guard.lock();
            if (scheduler.stopEvent_ == mine) scheduler.stopEvent_ = nullptr;
            os::closeHandle(mine);
            if (before == nullptr) return;
            os::signalEvent(before);
            os::closeHandle(before);
        }
    } const close{*this, guard, mine, before};
    guard.unlock();
    waiter(mine);
}

void SchedulerBase::wakeWorker() noexcept {
    if (HANDLE const wake = wakeEvent_.load()) os::signalEvent(wake);
}

void SchedulerBase::tellStopped() noexcept {
    if (stopEvent_ != nullptr) os::signalEvent(stopEvent_);
}

template class Task<HWND>;
template class Scheduler<HWND>;

}
