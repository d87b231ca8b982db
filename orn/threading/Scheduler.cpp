#include "orn/threading/Scheduler.h"

#include "orn/foundation/Error.h"
#include "orn/foundation/MultibyteImp.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Locale.h"
#include "orn/os/Waitable.h"
#include "orn/threading/ThreadName.h"

#include <clocale>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <utility>

namespace ORN::Threading {

namespace {

// The scheduler whose worker the calling thread is, also when finish has left that worker alone. The object has no
// destructor, because one would run on freed memory on Windows.
constinit thread_local SchedulerBase const* served = nullptr;

}

TaskBase::~TaskBase() = default;

SchedulerBase::SchedulerBase(int priority) noexcept : priority_{priority} {}
SchedulerBase::~SchedulerBase() = default;

SchedulerBase::SchedulerBase(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase copy constructor"}; }
SchedulerBase& SchedulerBase::operator=(SchedulerBase const&) { throw NotImplemented{L"SchedulerBase operator=()"}; }

/// An event that its users share: the scheduler, its worker, and threads that signal it outside the lock. The last of
/// them deletes it.
struct SchedulerBase::WakeEvent {
    explicit WakeEvent(HANDLE event) noexcept : handle{event} {}
    ~WakeEvent() { os::closeHandle(handle); }

    /// Null when the system refuses. There is no worker then, and the next task that is queued tries again.
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

/// One thread's wait for the running task, on that thread's stack. It is in the scheduler's list, under the lock, until
/// the task has stopped or the thread gives up.
struct SchedulerBase::StopWait {
    StopWait(SchedulerBase& scheduler, ExclusiveLock& guard)
        : event{os::createEvent()}, scheduler_{scheduler}, guard_{guard} {
        if (event == nullptr) throw WinError{L"CreateEvent", os::lastError()};
        next_ = std::exchange(scheduler_.stopWaits_, this);
    }
    ~StopWait() {
        guard_.lock();
        // A wait that was told is in the list no more, because tellStopped has taken the whole list out.
        for (StopWait** link = &scheduler_.stopWaits_; *link != nullptr; link = &(*link)->next_)
            if (*link == this) {
                *link = next_;
                break;
            }
        os::closeHandle(event);
    }
    StopWait(StopWait const&) = delete;
    StopWait& operator=(StopWait const&) = delete;

    static void tell(StopWait* first) noexcept {
        for (; first != nullptr; first = first->next_) os::signalEvent(first->event);
    }

    HANDLE const event;

private:
    StopWait* next_ = nullptr;
    SchedulerBase& scheduler_;
    ExclusiveLock& guard_;
};

/// The argument of a worker. The event and the handle belong to the worker, because the scheduler's fields may change
/// before the worker reads them.
struct SchedulerBase::Start {
    SchedulerBase& scheduler;
    WakeEvent::Use wake;
    HANDLE predecessor;  ///< a worker that finish has left alone, or null
};

HANDLE SchedulerBase::wakeEvent() const noexcept {
    WakeEvent const* const wake = wakeEvent_.load();
    return wake != nullptr ? wake->handle : nullptr;
}

HANDLE SchedulerBase::stopEvent() const noexcept { return stopWaits_ != nullptr ? stopWaits_->event : nullptr; }

void SchedulerBase::startThread() {
    ExclusiveLock guard{lockWord_};
    startThread(guard);
}

void SchedulerBase::startThread(ExclusiveLock& guard) {
    if (workerState_ == Worker::isAwaited) return;
    if (worker_ != nullptr && workerState_ == Worker::stays) {
        // A worker ends by itself only when a task ends its thread.
        DWORD code = 0;
        if (!os::threadExitCode(worker_, code) || code != os::threadStillActive) {
            // The next worker gets an event of its own, because this one may hold a signal that belongs to the dead worker.
            WakeEvent::Use const wake{wakeEvent_.exchange(nullptr)};
            os::closeHandle(worker_);
            worker_ = nullptr;
            // The report waits for the user. Meanwhile other threads need the lock, and may start a worker or finish.
            guard.unlock();
            os::showMessage(L"Thread exited unexpectedly", fromMultibyte(threadName()).c_str());
            guard.lock();
            if (workerState_ == Worker::isAwaited) return;
        }
    }
    if (wakeEvent_.load() == nullptr) wakeEvent_.store(WakeEvent::create());
    if (wakeEvent_.load() != nullptr && (worker_ == nullptr || workerState_ == Worker::isLeftAlone)) startWorker();
}

void SchedulerBase::startWorker() {
    std::unique_ptr<Start> start{new (std::nothrow) Start{*this, WakeEvent::use(wakeEvent_.load()), worker_}};
    if (start == nullptr) return;
    unsigned int const stackBytes = 0x40000;
    HANDLE const started = os::startThread(threadMain, start.get(), stackBytes);
    if (started == nullptr) return;
    static_cast<void>(start.release());  // the worker's from here on
    worker_ = started;
    workerState_ = Worker::stays;
    os::setThreadPriority(worker_, priority_);
}

unsigned int SchedulerBase::threadMain(void* start) {
    std::unique_ptr<Start const> const own{static_cast<Start const*>(start)};
    SchedulerBase& self = own->scheduler;
    // Two tasks must never run at once, so a worker that finish has left alone comes to its end first.
    if (own->predecessor != nullptr) {
        os::waitFor(own->predecessor, os::waitForever);
        os::closeHandle(own->predecessor);
    }
    served = &self;
    setThreadName(self.threadName(), os::callingThread);
    // Tasks may use COM, and convert texts by the user's code page, whatever locale the process has.
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
    // When the field holds another event or none, finish has taken this one out, and waits for this thread.
    while (wakeEvent_.load() == &wake) {
        if (os::waitFor(wake.handle, os::waitForever) != os::waitObject) return;
        for (bool done = false; !done;) {
            try {
                processTasks();
                done = true;
            } catch (std::exception const&) {
                // The task that threw is gone from the queue; the others must still run.
            }
        }
    }
}

bool SchedulerBase::finish(Waiter const& waiter) {
    HANDLE worker = nullptr;
    {
        ExclusiveLock const guard{lockWord_};
        refuseOwnWorker();
        // The call that waits owns the worker's handle, and a second one would close it.
        if (workerState_ == Worker::isAwaited) throw std::logic_error{"finish waits for the worker already"};
        eraseWholeQueue();
        if (TaskBase* const task = taskInProgress()) {
            cancelled_ = true;
            task->abort();
        }
        // Without its event in the field the worker leaves its loop; the signal only makes it look.
        if (WakeEvent::Use const wake{wakeEvent_.exchange(nullptr)}) os::signalEvent(wake->handle);
        worker = worker_;
        if (worker == nullptr) return true;
        workerState_ = Worker::isAwaited;
    }

    struct End {
        SchedulerBase& scheduler;
        bool ended = false;
        ~End() { scheduler.endFinish(ended); }
    } end{*this};
    os::lendPriority(worker);  // a worker of low priority could not end while threads of higher priority are busy
    if (waiter(worker) != os::waitObject) return true;
    end.ended = true;
    DWORD code = 0;
    return os::threadExitCode(worker, code) && code == 0;
}

/// When the wait gave up, the worker may still be in its last task. Its handle is kept, so that the next worker or the
/// next finish can wait for it.
void SchedulerBase::endFinish(bool ended) noexcept {
    ExclusiveLock const guard{lockWord_};
    dropLateTasks();
    workerState_ = ended ? Worker::stays : Worker::isLeftAlone;
    if (!ended) return;
    os::closeHandle(worker_);
    worker_ = nullptr;
}

// Tasks that are queued while finish waits would otherwise run after finish has returned.
void SchedulerBase::dropLateTasks() noexcept {
    if (workerState_ == Worker::isAwaited) eraseWholeQueue();
}

void SchedulerBase::refuseOwnWorker() const {
    // The worker's handle would not tell. A worker that finish has left alone may run its last task while worker_ is
    // its successor, and waiting for the successor is waiting for that task, too.
    if (served == this) throw std::logic_error{"a scheduler's worker cannot wait for itself"};
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
    if (waiter != nullptr) refuseOwnWorker();
    // The flag comes first: the worker reads it, under the lock, as soon as the task has stopped.
    if (setCancelled) cancelled_ = true;
    taskInProgress()->abort();
    if (waiter != nullptr) waitForTask(guard, *waiter);
}

void SchedulerBase::waitForTask(ExclusiveLock& guard, Waiter const& waiter) {
    StopWait const wait{*this, guard};
    guard.unlock();
    waiter(wait.event);
}

void SchedulerBase::wakeWorker(ExclusiveLock& guard) {
    dropLateTasks();
    // Used beyond the lock, so finish must not delete it meanwhile.
    WakeEvent::Use const wake = WakeEvent::use(wakeEvent_.load());
    guard.unlock();
    if (wake != nullptr) os::signalEvent(wake->handle);
}

void SchedulerBase::tellStopped() noexcept {
    StopWait::tell(std::exchange(stopWaits_, nullptr));
    dropLateTasks();
}

template class ORN_API_DEFINED Task<HWND>;
template class ORN_API_DEFINED Scheduler<HWND>;

}
