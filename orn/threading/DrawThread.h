/// The worker that redraws windows in the background, at the lowest priority: of the windows that wait it always draws
/// next the one that is front-most on the screen.
#pragma once

#include "orn/threading/Scheduler.h"

#include <map>

/// A client's job of drawing one window. Its owner keeps it alive until `cancel` of its window with a waiter, or `finish`,
/// has returned; see Scheduler.h for that and for what a task must not do.
class ORN_API DrawTask : public ORN::Threading::Task<HWND> {
public:
    /// Draws, on the worker and without any lock. True when the drawing is complete; false when it stopped early and is
    /// to be resumed. One that throws a std::exception is dropped, and only that one; any other exception ends the
    /// process. Since abort() may come before run() has begun, the flag that it sets is taken back where it is obeyed:
    /// `if (aborted_.exchange(false)) return false;`
    virtual bool run() = 0;

    ~DrawTask() override;
};

/// Clients queue one task a window. A task that is queued for a window above the one being drawn, or for that window
/// itself, interrupts the drawing. The thread start and exit hooks are for the subclass, which calls finish in its own
/// destructor: when the base's destructor runs, the hooks of the subclass are gone.
class ORN_API DrawThread : public ORN::Threading::Scheduler<HWND> {
public:
    DrawThread();
    ~DrawThread() override;

    /// Queues a task. While a task is queued for its window, a second one for that window is not stored. When it throws,
    /// for want of memory, nothing has changed.
    void insert(DrawTask& task);

    /// A window has become active: if it is the one to be drawn first, the drawing in progress is interrupted for it.
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
