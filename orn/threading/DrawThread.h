/// A worker that redraws windows in the background, at the lowest priority. Of the queued windows it draws the one that
/// is front-most on the screen first.
#pragma once

#include "orn/threading/Scheduler.h"

#include <map>

/// A client's task of drawing one window. Its owner keeps it alive until `cancel` of its window with a waiter, or
/// `finish`, has returned. Scheduler.h says more about this, and what a task must not do.
class ORN_API DrawTask : public ORN::Threading::Task<HWND> {
public:
    /// Draws, on the worker and without any lock. True when the drawing is complete; false when it stopped early and
    /// must be resumed. A task that throws a std::exception is dropped, and no other task; any other exception ends the
    /// process. Because abort() may be called before run() has begun, run() clears the flag of abort() when it obeys:
    /// `if (aborted_.exchange(false)) return false;`
    virtual bool run() = 0;

    ~DrawTask() override;
};

/// Clients queue one task for each window. A task for a window above the one being drawn, or for that window itself,
/// interrupts the drawing. A subclass defines the thread's start and exit hooks. It must call finish in its own
/// destructor, because the hooks are gone when the destructor of the base runs.
class ORN_API DrawThread : public ORN::Threading::Scheduler<HWND> {
public:
    DrawThread();
    ~DrawThread() override;

    /// Queues a task. While a task is queued for a window, a second one for that window is not stored. When there is no
    /// memory it throws std::bad_alloc, and nothing has changed.
    void insert(DrawTask& task);

    /// To be called when a window has become active. If that window is the next to be drawn, the drawing in progress is
    /// interrupted for it.
    void updateActive(HWND window);

protected:
    void processTasks() override;
    void eraseWholeQueue() override;  ///< forgets the tasks, which stay their owners'
    char const* threadName() const override;
    ORN::Threading::TaskBase* taskInProgress() const override;  ///< the task whose window is being drawn
    void eraseFromQueue(HWND const& window) override;

private:
    using Queue = std::map<HWND, DrawTask*>;

    Queue::iterator findHighestWindow();
    bool runCurrentTask(ExclusiveLock& guard);

    DrawTask* current_ = nullptr;
    Queue queue_;
    Queue::iterator hint_;
};
