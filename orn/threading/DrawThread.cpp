#include "orn/threading/DrawThread.h"

#include "orn/os/Window.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

using ORN::Threading::BoringWaiter;
namespace os = ORN::os;

namespace {

/// The window and its ancestors, the topmost first.
std::vector<HWND> chainOf(HWND window) {
    std::vector<HWND> chain;
    for (; window != nullptr; window = os::parentWindow(window)) chain.push_back(window);
    std::reverse(chain.begin(), chain.end());
    return chain;
}

/// Which of two siblings lies above; the left-hand one also when they are not found.
bool siblingLiesAbove(HWND a, HWND b, HWND parent) {
    HWND first = a;
    os::visitSiblings(a, parent, [&](HWND sibling) {
        if (sibling != a && sibling != b) return true;
        first = sibling;
        return false;
    });
    return first == a;
}

/// An ancestor lies above its descendants, and a window above itself.
bool liesAbove(HWND a, HWND b) {
    std::vector<HWND> const left = chainOf(a), right = chainOf(b);
    // Where the chains part, they hold two siblings; where one ends first, it is that of an ancestor.
    auto const [l, r] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    if (l == left.end()) return true;
    if (r == right.end()) return false;
    return siblingLiesAbove(*l, *r, l != left.begin() ? *std::prev(l) : nullptr);
}

}

DrawTask::~DrawTask() = default;

DrawThread::DrawThread() : Scheduler{-2}, hint_{queue_.end()} {}
DrawThread::~DrawThread() { finish(BoringWaiter{}); }

void DrawThread::insert(DrawTask& task) {
    HWND const window = task.key();
    Queue made{{window, &task}};
    Queue::node_type entry = made.extract(made.begin());

    // Everything that may fail is done before anything is changed. The window system is asked outside the lock, because
    // other threads want the lock meanwhile. When the running task changes faster than the window system answers, it is
    // asked inside the lock at last.
    ExclusiveLock guard{lockWord()};
    HWND asked = nullptr;
    bool above = false;
    for (int tries = 0;; ++tries) {
        startThread(guard);
        if (current_ == nullptr) break;
        HWND const running = current_->key();
        if (running == window) above = true;
        if (running == window || running == asked) break;
        asked = running;
        bool const outside = tries < 3;
        if (outside) guard.unlock();
        above = liesAbove(window, running);
        if (!outside) break;
        guard.lock();
    }

    if (current_ != nullptr) {
        // The new task takes the place of the running one, which is not to be resumed beside it.
        if (current_->key() == window) setCancelled(true);
        if (above) current_->abort();
    }
    hint_ = queue_.insert(hint_, std::move(entry));
    wakeWorker(guard);
}

void DrawThread::updateActive(HWND window) {
    ExclusiveLock const guard{lockWord()};
    auto const highest = findHighestWindow();
    // A task that is cancelled has been aborted already.
    if (highest != queue_.end() && highest->first == window && current_ != nullptr && !cancelled()) current_->abort();
}

void DrawThread::processTasks() {
    ExclusiveLock guard{lockWord()};
    DrawTask* const before = current_;
    auto highest = findHighestWindow();
    setCancelled(false);
    while (highest != queue_.end()) {
        current_ = highest->second;
        hint_ = std::next(highest);                        // where the task belongs when it is resumed
        Queue::node_type entry = queue_.extract(highest);  // kept: resuming the task must not need memory
        if (runCurrentTask(guard)) {
            entry.key() = entry.mapped()->key();
            hint_ = queue_.insert(hint_, std::move(entry));
        }
        // Threads that wait for the lock come first: what they queue or cancel may change which window is next.
        guard.unlock();
        guard.lock();
        highest = findHighestWindow();
        setCancelled(false);
    }
    current_ = before;  // under the lock, because finish may read it on another thread
}

/// Runs the current task outside the lock. True, inside the lock again, when the task is to be resumed. The threads
/// that wait for the task are woken however it ends.
bool DrawThread::runCurrentTask(ExclusiveLock& guard) {
    struct Stopped {
        DrawThread& thread;
        ExclusiveLock& guard;
        ~Stopped() {
            guard.lock();
            thread.tellStopped();
            thread.current_ = nullptr;
        }
    } const stopped{*this, guard};

    guard.unlock();
    bool const complete = current_->run();
    guard.lock();
    return !complete && !cancelled();
}

void DrawThread::eraseWholeQueue() {
    queue_.clear();
    hint_ = queue_.end();
}

void DrawThread::eraseFromQueue(HWND const& window) {
    if (auto const found = queue_.find(window); found != queue_.end()) hint_ = queue_.erase(found);
}

char const* DrawThread::threadName() const { return "ORN::Draw"; }

ORN::Threading::TaskBase* DrawThread::taskInProgress() const { return current_; }

DrawThread::Queue::iterator DrawThread::findHighestWindow() {
    // A single task needs no order, and is run also when its window is gone.
    if (queue_.size() < 2) return queue_.begin();

    // Only windows that hold a queued one are looked into; each of them costs a request where windows belong to a server.
    std::set<HWND> ancestors;
    for (auto const& [window, task] : queue_)
        for (HWND parent = os::parentWindow(window); parent != nullptr && ancestors.insert(parent).second;)
            parent = os::parentWindow(parent);

    auto highest = queue_.end();
    std::function<bool(HWND)> const visit = [&](HWND window) {
        if (ancestors.contains(window)) os::visitChildWindows(window, visit);  // in front of the window itself
        if (highest == queue_.end()) highest = queue_.find(window);
        return highest == queue_.end();
    };
    os::visitTopLevelWindows(visit);
    return highest;
}
