#include "orn/threading/Scheduler.h"

#include "orn/foundation/Error.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Locale.h"
#include "orn/os/Waitable.h"
#include "orn/text/Encoding.h"
#include "orn/threading/ThreadName.h"

#include <clocale>
#include <exception>
#include <memory>
#include <new>

namespace ORN::Threading {

TaskBase::~TaskBase() = default;

SchedulerBase::SchedulerBase(int priority) noexcept : priority_{priority} {}
SchedulerBase::~SchedulerBase() = default;

SchedulerBase::SchedulerBase(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase copy constructor"}; }
SchedulerBase& SchedulerBase::operator=(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase operator=()"}; }

/// An event that lives until the last who may use it lets go: the scheduler, its worker, and those who signal it outside
/// the lock.
struct SchedulerBase::WakeEvent {
    explicit WakeEvent(HANDLE event) noexcept : handle{event} {}
    ~WakeEvent() { os::closeHandle(handle); }

    static WakeEvent* create() noexcept {
        HANDLE const event = os::createEvent();
        if (event == nullptr) return nullptr;
        auto* const made = new (std::nothrow) WakeEvent{event};
        if (made == nullptr) os::closeHandle(event);
        return made;
    }

    struct LetGo {
        void operator()(WakeEvent* event) const noexcept {
            if (event->users_.fetch_sub(1) == 1) delete event;
        }
    };
    using Use = std::unique_ptr<WakeEvent, LetGo>;

    /// A further use of an event, or of none.
    static Use use(WakeEvent* event) noexcept {
        if (event != nullptr) event->users_.fetch_add(1);
        return Use{event};
    }

    HANDLE const handle;

private:
    std::atomic<int> users_{1};
};

/// What a worker is given; the event is its own, whatever becomes of the scheduler's field.
struct SchedulerBase::Start {
    SchedulerBase& scheduler;
    WakeEvent::Use wake;
};

HANDLE SchedulerBase::wakeEvent() const noexcept {
    WakeEvent const* const wake = wakeEvent_.load();
    return wake != nullptr ? wake->handle : nullptr;
}

void SchedulerBase::startThread() {
    ExclusiveLock guard{lockWord_};
    startThread(guard);
}

void SchedulerBase::startThread(ExclusiveLock& guard) {
    if (worker_ != nullptr && !finishing_) {
        DWORD code = 0;
        if (!os::threadExitCode(worker_, code) || code != os::threadStillActive) {
            WakeEvent::Use const wake{wakeEvent_.exchange(nullptr)};
            os::closeHandle(worker_);
            worker_ = nullptr;
            guard.unlock();
            os::showMessage(L"Thread exited unexpectedly", getWCS(threadName()).c_str());
            guard.lock();
        }
    }
    if (wakeEvent_.load() == nullptr) wakeEvent_.store(WakeEvent::create());
    if (wakeEvent_.load() != nullptr && worker_ == nullptr) startWorker();
}

void SchedulerBase::startWorker() {
    std::unique_ptr<Start> start{new (std::nothrow) Start{*this, WakeEvent::use(wakeEvent_.load())}};
    if (start == nullptr) return;
    unsigned int const stackBytes = 0x40000;
    worker_ = os::startThread(threadMain, start.get(), stackBytes);
    if (worker_ == nullptr) return;
    static_cast<void>(start.release());
    os::setThreadPriority(worker_, priority_);
}

unsigned int SchedulerBase::threadMain(void* start) {
    std::unique_ptr<Start const> const own{static_cast<Start const*>(start)};
    SchedulerBase& self = own->scheduler;
    setThreadName(self.threadName(), 0xFFFFFFFF);
    bool const apartment = os::enterApartment();
    os::threadLocaleMode(os::perThreadLocale);
    os::setLocale(LC_CTYPE, "");

    self.onThreadStart();
    self.serve(*own->wake);
    self.onThreadExit();

    os::threadLocaleMode(os::processLocale);
    if (apartment) os::leaveApartment();
    return 0;
}

void SchedulerBase::serve(WakeEvent& wake) {
    // When another event is in the field, finish has taken this one out, and waits.
    while (wakeEvent_.load() == &wake) {
        if (os::waitFor(wake.handle, os::waitForever) != os::waitObject) return;
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
    HANDLE worker = nullptr;
    {
        ExclusiveLock const guard{lockWord_};
        eraseWholeQueue();
        if (TaskBase* const task = taskInProgress()) {
            cancelled_ = true;
            task->abort();
        }
        if (WakeEvent::Use const wake{wakeEvent_.exchange(nullptr)}) os::signalEvent(wake->handle);
        worker = worker_;
        if (worker == nullptr) return true;
        finishing_ = true;
    }

    os::lendPriority(worker);  // a worker of low priority would starve beside a waiting thread of higher
    bool result = true;
    if (waiter(worker) == os::waitObject) {
        DWORD code = 0;
        result = os::threadExitCode(worker, code) && code == 0;
    }

    ExclusiveLock guard{lockWord_};
    os::closeHandle(worker);
    worker_ = nullptr;
    finishing_ = false;
    if (wakeEvent_.load() == nullptr) return result;
    // Something was queued after the queue had been emptied, when the worker that ended still counted as live.
    startWorker();
    wakeWorker(guard);
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
    if (before == nullptr && stopEvent_ != nullptr) {
        DWORD const code = os::lastError();
        os::closeHandle(mine);
        throw WinError{L"DuplicateHandle", code};
    }
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

void SchedulerBase::wakeWorker(ExclusiveLock& guard) {
    WakeEvent::Use const wake = WakeEvent::use(wakeEvent_.load());
    guard.unlock();
    if (wake != nullptr) os::signalEvent(wake->handle);
}

void SchedulerBase::tellStopped() noexcept {
    if (stopEvent_ != nullptr) os::signalEvent(stopEvent_);
}

template class ORN_API_DEFINED Task<HWND>;
template class ORN_API_DEFINED Scheduler<HWND>;

}
