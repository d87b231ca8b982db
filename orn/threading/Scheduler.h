/// A background worker: one thread that sleeps on an event and wakes to run queued tasks. Owners can drop queued tasks,
/// abort the running task, wait until it has stopped, and end the worker. Derived classes define the queue and how
/// tasks run.
///
/// A queued task must live, and its key() and abort() must be ready for calls, until `cancel` with a waiter or `finish`
/// has returned. It is not enough that the task reports its own end, because the scheduler may still call abort() then,
/// or resume the task.
///
/// A task must not wait for its own worker. On the worker, also when `finish` has left it alone, these throw
/// std::logic_error and do nothing: `finish`, `interrupt` with a waiter, and `cancel` of the running task's key with a
/// waiter. And a task that wants a lock waits for ever when the lock's holder waits for the worker. A task must not end
/// its thread. It may call everything else, also operations that queue tasks.
///
/// Every public operation takes the scheduler's lock word exclusively, and releases it while it waits.
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
    /// Asks the task to stop as soon as it can. Other threads call it under the scheduler's lock: it must not wait,
    /// throw, or call the scheduler. It may be called more than once, before the task's work has begun, and after the
    /// work has ended. So the work clears the flag that abort() sets when it obeys, and not when it begins.
    virtual void abort() = 0;

    virtual ~TaskBase();
};

/// A unit of work that can be cancelled by its key.
template <typename Key>
class Task : public TaskBase {
public:
    virtual Key key() const = 0;  ///< the key that cancel() takes; always the same, from any thread
};

/// The worker with its protocol of cancelling and waiting. The destructor stops nothing: owners call finish before.
///
/// Any number of threads may wait for the running task at once. Each of them is woken when the task has stopped, and
/// not before. A waiter that gives up or throws ends its own wait and no other.
///
/// A derived class keeps a queue and defines in processTasks how tasks run. It holds the lock for everything but the
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
    void interrupt(Waiter const& waiter);  ///< also waits until the task has stopped

    /// Drops the queued tasks, aborts the running task, ends the worker and waits for it. Tasks that any thread queues
    /// before finish returns are dropped too, and no worker is started for them. Afterwards the scheduler is as it was
    /// when it was made, and may be destroyed or used again. False when the worker ended with an exit code other than
    /// 0; true also when there was no worker, or the waiter failed. One call at a time: while one waits, another throws
    /// std::logic_error and does nothing, also when the first one's waiter makes it.
    ///
    /// When the waiter gives up or throws, the worker still ends, but may be busy with its last task. The scheduler can
    /// be used again at once: a new worker runs nothing before the old one has ended. Before the scheduler is
    /// destroyed, finish must be called again; it waits for the worker that is left.
    bool finish(Waiter const& waiter);

protected:
    // The worker calls the first three. The others are called under the lock, threadName from any thread.
    virtual void onThreadStart() = 0;  ///< after the worker's set-up
    virtual void onThreadExit() = 0;   ///< before the worker's end

    /// Runs queued tasks until the queue is empty. When it throws a std::exception, the exception is discarded and the
    /// worker calls it again at once; any other exception ends the process.
    virtual void processTasks() = 0;

    virtual void eraseWholeQueue() = 0;            ///< does not throw
    virtual char const* threadName() const = 0;    ///< for debuggers, and for the message about a dead worker
    virtual TaskBase* taskInProgress() const = 0;  ///< null between tasks

    /// Makes sure that there is a live worker. A worker that has died is reported to the user and replaced. The first
    /// form takes the lock, the second releases it for the report only. Threads that call them at once start one
    /// worker. When the system refuses, or while finish waits, no worker starts and nothing is reported.
    /// @{
    void startThread();
    void startThread(ExclusiveLock& guard);
    /// @}

    /// Aborts the running task (there must be one), for a caller that holds the lock through the guard. With a waiter
    /// the guard steps out until the task has stopped; std::logic_error when that is the calling thread's own task.
    void doCancelCurrentTask(ExclusiveLock& guard, bool setCancelled, Waiter const* waiter);

    void refuseOwnWorker() const;  ///< std::logic_error on this scheduler's worker, which cannot wait for itself

    LONG volatile& lockWord() const noexcept { return lockWord_; }  ///< the scheduler's (see ReadWriteLock)
    HANDLE wakeEvent() const noexcept;                              ///< under the lock; null without a worker

    /// Under the lock: the event of the thread that came last to wait for the task; null when no thread waits.
    HANDLE stopEvent() const noexcept;

    bool cancelled() const noexcept { return cancelled_; }  ///< under the lock: the task is not to be resumed
    void setCancelled(bool cancelled) noexcept { cancelled_ = cancelled; }  ///< under the lock

    /// Releases the lock and then signals the wake event, because a worker that is woken under the lock has to wait
    /// once more. The event stays alive meanwhile, whatever finish does.
    void wakeWorker(ExclusiveLock& guard);

    void tellStopped() noexcept;  ///< under the lock: wakes all threads that wait for the task

private:
    SchedulerBase(SchedulerBase const&);             // both throw NotImplemented
    SchedulerBase& operator=(SchedulerBase const&);  // NOLINT(misc-unconventional-assign-operator)

    struct WakeEvent;
    struct StopWait;
    struct Start;

    /// Whether finish has told the worker to end, and waits for it or has given up waiting.
    enum class Worker : unsigned char { stays, isAwaited, isLeftAlone };

    static unsigned int threadMain(void* start);
    void startWorker();
    void serve(WakeEvent& wake);
    void waitForTask(ExclusiveLock& guard, Waiter const& waiter);
    void dropLateTasks() noexcept;
    void endFinish(bool ended) noexcept;

    mutable LONG volatile lockWord_ = 0;
    std::atomic<WakeEvent*> wakeEvent_ = nullptr;  // the worker reads it without the lock
    StopWait* stopWaits_ = nullptr;                // the waits for the running task, the latest first
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

    void cancel(Key const& key);                        ///< drops the queued task of this key, aborts the running one
    void cancel(Key const& key, Waiter const& waiter);  ///< also waits until it has stopped; the task may then be freed

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
    auto const* const task = static_cast<Task<Key> const*>(taskInProgress());
    bool const runs = task != nullptr && task->key() == key;
    if (runs && waiter != nullptr) refuseOwnWorker();  // a refused call must not drop the queued task
    eraseFromQueue(key);
    if (runs) doCancelCurrentTask(guard, true, waiter);
}

extern template class ORN_API_DECLARED Task<HWND>;
extern template class ORN_API_DECLARED Scheduler<HWND>;

}
