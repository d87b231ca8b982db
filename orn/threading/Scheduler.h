/// A background worker: one thread that sleeps on an event, wakes to run queued tasks, and can be told to drop queued
/// work, to abort the task that runs, to wait until it has stopped, and to end. What the queue is and how tasks run is for
/// derived classes to say.
///
/// A task must live, and its key() and abort() be ready for calls, from the moment it is queued until the scheduler has
/// let go of it, which its owner learns from the scheduler alone: `cancel` with a waiter, or `finish`, has returned. That
/// the task has told of its own end is not enough, because abort() may still come then, and so may a call to resume it.
///
/// What a task does on the worker must not wait for that worker: there `cancel` and `interrupt` with a waiter, and
/// `finish`, throw std::logic_error and do nothing, and a lock that somebody holds who waits for the worker is never
/// free. It must not end its thread. Everything else it may call, also what queues tasks.
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
    /// Asks the task to stop as soon as it can. Called from other threads, under the scheduler's lock: it must not wait,
    /// throw, or call the scheduler. It may come more than once, before the task's work has begun on the worker, and when
    /// that is over already; so a flag that it sets is taken back by the work when it obeys, not when it begins.
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
///
/// Any number of threads may wait for the running task at once. Each of them is told when the task has stopped, and only
/// then; a waiter that gives up, or throws, ends its own wait and nobody else's.
///
/// Whoever derives keeps a queue and says in processTasks how tasks run. All of it is done under the lock, but for the
/// work itself:
///
///     insert:        startThread(guard), put the task into the queue, wakeWorker(guard) at the end
///     processTasks:  take the lock; while the queue is not empty: setCancelled(false), take a task out and make it the
///                    one in progress; unlock, do the work, lock; if it is to be resumed and !cancelled(), put it back;
///                    tellStopped(), and no task is in progress. The last two steps also when the work throws.
///
/// While `finish` waits, wakeWorker and tellStopped empty the queue, so positions in it end there.
class ORN_API SchedulerBase {
public:
    explicit SchedulerBase(int priority) noexcept;  ///< the worker's, -2 lowest to 2 highest; no thread starts here
    virtual ~SchedulerBase();

    /// Aborts the running task, if there is one. It may be resumed later.
    void interrupt();
    void interrupt(Waiter const& waiter);  ///< and waits until it has stopped

    /// Drops what is queued, aborts what runs, ends the worker and waits for it. What is queued until it returns is
    /// dropped, too, whoever queues it, and no worker is started for it: afterwards the scheduler is as it was made, and
    /// may be destroyed or used again. False when the worker ended with an exit code other than 0; true also when there
    /// was no worker, or the waiter failed. One thread at a time.
    ///
    /// When the waiter gives up or throws, the worker is told to end all the same and may still be busy with its last
    /// task: the scheduler can be used again at once, a new worker runs nothing before the old one has ended, and only
    /// another finish, which waits for whichever is left, makes it ready to be destroyed.
    bool finish(Waiter const& waiter);

protected:
    // All but the destructor are called on the worker (the first three) or under the lock (the others).
    virtual void onThreadStart() = 0;  ///< after the worker's set-up
    virtual void onThreadExit() = 0;   ///< before the worker's end

    /// Runs queued tasks until the queue is empty. A std::exception that it throws is discarded, and it is called again at
    /// once; any other exception ends the process.
    virtual void processTasks() = 0;

    virtual void eraseWholeQueue() = 0;            ///< under the lock; does not throw
    virtual char const* threadName() const = 0;    ///< for debuggers, and the message about a dead worker; any thread
    virtual TaskBase* taskInProgress() const = 0;  ///< null between tasks; under the lock

    /// Makes sure that there is a live worker. One that has died is reported to the user, and replaced. Takes the lock, or
    /// steps out of it for the report only; threads that call it at once start one worker. When the system refuses, or while
    /// finish waits, there is none, and nothing is told.
    /// @{
    void startThread();
    void startThread(ExclusiveLock& guard);
    /// @}

    /// Aborts the running task (there must be one), for a caller that holds the lock through the guard. With a waiter the
    /// guard steps out until the task has stopped; std::logic_error when that is the calling thread's own task.
    void doCancelCurrentTask(ExclusiveLock& guard, bool setCancelled, Waiter const* waiter);

    LONG volatile& lockWord() const noexcept { return lockWord_; }  ///< the scheduler's (see ReadWriteLock)
    HANDLE wakeEvent() const noexcept;                              ///< under the lock; null without a worker

    /// Under the lock: the event of the thread that came last to wait for the task; null when no thread waits.
    HANDLE stopEvent() const noexcept;

    bool cancelled() const noexcept { return cancelled_; }  ///< under the lock: the task is not to be resumed
    void setCancelled(bool cancelled) noexcept { cancelled_ = cancelled; }  ///< under the lock

    /// Steps out of the lock, and signals the wake event that there was. (A worker that is woken under the lock has to
    /// wait once more.) The event lives on meanwhile, whatever finish does.
    void wakeWorker(ExclusiveLock& guard);

    void tellStopped() noexcept;  ///< tells everyone who waits for the task, under the lock

private:
    SchedulerBase(SchedulerBase const&);             // both throw NotImplemented
    SchedulerBase& operator=(SchedulerBase const&);  // NOLINT(misc-unconventional-assign-operator)

    struct WakeEvent;
    struct StopWait;
    struct Start;

    /// What becomes of the worker: finish ends it and waits for it, or has given up waiting.
    enum class Worker : unsigned char { stays, isAwaited, isLeftAlone };

    static unsigned int threadMain(void* start);
    void startWorker();
    void serve(WakeEvent& wake);
    void waitForTask(ExclusiveLock& guard, Waiter const& waiter);
    void refuseOwnWorker() const;
    void dropLateTasks() noexcept;
    void endFinish(bool ended) noexcept;

    mutable LONG volatile lockWord_ = 0;
    std::atomic<WakeEvent*> wakeEvent_ = nullptr;  // the worker reads it without the lock
    StopWait* stopWaits_ = nullptr;                // those who wait for the running task, the latest first
    HANDLE worker_ = nullptr;
    bool cancelled_ = false;
    Worker workerState_ = Worker::stays;
    int priority_;
};

/// A scheduler whose tasks are cancelled by key.
template <typename Key>
class Scheduler : public SchedulerBase {
public:
    explicit Scheduler(int priority) noexcept;  ///< as SchedulerBase

    void cancel(Key const& key);                        ///< drops what is queued for the key, aborts it if it runs
    void cancel(Key const& key, Waiter const& waiter);  ///< and waits until it has stopped: the task may then be freed

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
