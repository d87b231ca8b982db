/// A background worker: one thread that sleeps on an event, wakes to run queued tasks, and can be told to drop queued
/// work, to abort the task that runs, to wait until it has stopped, and to end. What the queue is and how tasks run is for
/// derived classes to say.
///
/// Every public operation takes the scheduler's lock word exclusively; it is not held while something is waited for.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"
#include "orn/threading/Lock.h"
#include "orn/threading/Waiter.h"

#include <atomic>

namespace ORN::Threading {

/// A unit of work.
class ORN_API TaskBase {
public:
    /// Asks the task, while it runs on the worker, to stop as soon as it can. Called from other threads, under the
    /// scheduler's lock: it must not wait, nor call the scheduler.
    virtual void abort() = 0;

    virtual ~TaskBase();
};

/// A unit of work that can be cancelled by its key.
template <typename Key>
class Task : public TaskBase {
public:
    virtual Key key() const = 0;  ///< what cancel() names; the same at every call, from any thread
};

/// The worker, its protocol of cancelling and waiting. The destructor stops nothing: owners call finish before.
class ORN_API SchedulerBase {
public:
    explicit SchedulerBase(int priority) noexcept;  ///< the worker's, -2 lowest to 2 highest; no thread starts here
    virtual ~SchedulerBase();

    /// Aborts the running task, if there is one. It may be resumed later.
    void interrupt();
    void interrupt(Waiter const& waiter);  ///< and waits until it has stopped

    /// Drops what is queued, aborts what runs, ends the worker and waits for it. False when the worker ended with an exit
    /// code other than 0; true also when there was no worker, or the waiter failed. Afterwards a new worker may start; it
    /// does at once for what other threads have queued meanwhile. One thread at a time.
    bool finish(Waiter const& waiter);

protected:
    // All but the destructor are called on the worker (the first three) or under the lock (the others).
    virtual void onThreadStart() = 0;  ///< after the worker's set-up
    virtual void onThreadExit() = 0;   ///< before the worker's end

    /// Runs queued tasks until the queue is empty. A std::exception that it throws is discarded, and it is called again at
    /// once.
    virtual void processTasks() = 0;

    virtual void eraseWholeQueue() = 0;            ///< under the lock
    virtual char const* threadName() const = 0;    ///< for debuggers, and the message about a dead worker; any thread
    virtual TaskBase* taskInProgress() const = 0;  ///< null between tasks; under the lock

    /// Makes sure that there is a live worker. One that has died is reported to the user, and replaced. Takes the lock, or
    /// steps out of it for the report only; threads that call it at once start one worker. When the system refuses there
    /// is none, and nothing is told.
    /// @{
    void startThread();
    void startThread(ExclusiveLock& guard);
    /// @}

    /// Aborts the running task (there must be one), for a caller that holds the lock through the guard. With a waiter the
    /// guard steps out until the task has stopped.
    void doCancelCurrentTask(ExclusiveLock& guard, bool setCancelled, Waiter const* waiter);

    LONG volatile& lockWord() const noexcept { return lockWord_; }  ///< the scheduler's (see ReadWriteLock)
    HANDLE wakeEvent() const noexcept;                              ///< under the lock; null without a worker
    HANDLE stopEvent() const noexcept { return stopEvent_; }  ///< under the lock; null when nobody waits for the task
    bool cancelled() const noexcept { return cancelled_; }    ///< under the lock: the task is not to be resumed
    void setCancelled(bool cancelled) noexcept { cancelled_ = cancelled; }  ///< under the lock

    /// Steps out of the lock, and signals the wake event that there was. (A worker that is woken under the lock has to
    /// wait once more.) The event lives on meanwhile, whatever finish does.
    void wakeWorker(ExclusiveLock& guard);

    void tellStopped() noexcept;  ///< signals the stop event, under the lock; nothing when there is none

private:
    SchedulerBase(SchedulerBase const&);             // both throw NotImplemented
    SchedulerBase& operator=(SchedulerBase const&);  // NOLINT(misc-unconventional-assign-operator)

    struct WakeEvent;
    struct Start;

    static unsigned int threadMain(void* start);
    void startWorker();
    void serve(WakeEvent& wake);
    void waitForTask(ExclusiveLock& guard, Waiter const& waiter);

    mutable LONG volatile lockWord_ = 0;
    std::atomic<WakeEvent*> wakeEvent_ = nullptr;  // the worker reads it without the lock
    HANDLE stopEvent_ = nullptr;
    HANDLE worker_ = nullptr;
    bool cancelled_ = false;
    int priority_;
    bool finishing_ = false;  // a worker that has ended is no surprise
};

/// A scheduler whose tasks are cancelled by key.
template <typename Key>
class Scheduler : public SchedulerBase {
public:
    explicit Scheduler(int priority) noexcept;  ///< as SchedulerBase

    void cancel(Key const& key);                        ///< drops what is queued for the key, aborts it if it runs
    void cancel(Key const& key, Waiter const& waiter);  ///< and waits until it has stopped

protected:
    virtual void eraseFromQueue(Key const& key) = 0;  ///< under the lock

private:
    void cancel(Key const& key, Waiter const* waiter);
};

// Not inline: what an explicit instantiation exports on Windows are the members that are not.
template <typename Key>
Scheduler<Key>::Scheduler(int priority) noexcept : SchedulerBase{priority} {}

template <typename Key>
void Scheduler<Key>::cancel(Key const& key) {
    cancel(key, nullptr);
}

template <typename Key>
void Scheduler<Key>::cancel(Key const& key, Waiter const& waiter) {
    cancel(key, &waiter);
}

template <typename Key>
void Scheduler<Key>::cancel(Key const& key, Waiter const* waiter) {
    ExclusiveLock guard{lockWord()};
    eraseFromQueue(key);
    auto const* const task = static_cast<Task<Key> const*>(taskInProgress());
    if (task != nullptr && task->key() == key) doCancelCurrentTask(guard, true, waiter);
}

extern template class ORN_API_DECLARED Task<HWND>;
extern template class ORN_API_DECLARED Scheduler<HWND>;

}
