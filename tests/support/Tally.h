/// A number that threads raise and wait for. (The waits of std::atomic lose wake-ups in some runtimes.)
#pragma once

#include <condition_variable>
#include <mutex>

class Tally {
public:
    int operator++() { return add(); }
    operator int() const {
        std::lock_guard const lock{mutex_};
        return count_;
    }

    /// Waits until the number is at least this one.
    void reach(int count) const {
        std::unique_lock lock{mutex_};
        raised_.wait(lock, [&] { return count_ >= count; });
    }

private:
    int add() {
        std::lock_guard const lock{mutex_};
        raised_.notify_all();
        return ++count_;
    }

    mutable std::mutex mutex_;
    mutable std::condition_variable raised_;
    int count_ = 0;
};
