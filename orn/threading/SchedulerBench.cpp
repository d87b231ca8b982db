// needs: Boost::headers
#include "orn/threading/Scheduler.h"

#include <benchmark/benchmark.h>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>

#include <linux/futex.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdint>
#include <deque>
#include <thread>
#include <vector>

using namespace ORN::Threading;

namespace {

using Clock = std::chrono::steady_clock;

/// A word that one thread sets and another sleeps on, with as little as can be around the system's call.
class BareEvent {
public:
    void set() {
        word_.store(1);
        syscall(SYS_futex, &word_, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
    }
    void wait() {
        while (word_.exchange(0) == 0) syscall(SYS_futex, &word_, FUTEX_WAIT_PRIVATE, 0, nullptr, nullptr, 0);
    }

private:
    std::atomic<std::uint32_t> word_{0};
};

struct BenchTask : Task<HWND> {
    void abort() override {}
    HWND key() const override { return nullptr; }
    virtual void run() = 0;
};

/// Runs tasks in the order in which they came.
class BenchScheduler final : public Scheduler<HWND> {
public:
    BenchScheduler() : Scheduler{0} {}
    ~BenchScheduler() override { finish(BoringWaiter{}); }

    void insert(BenchTask& task) {
        ExclusiveLock guard{lockWord()};
        startThread(guard);
        queue_.push_back(&task);
        wakeWorker(guard);
    }

private:
    void onThreadStart() override {}
    void onThreadExit() override {}
    void processTasks() override {
        ExclusiveLock guard{lockWord()};
        while (!queue_.empty()) {
            current_ = queue_.front();
            queue_.pop_front();
            setCancelled(false);
            guard.unlock();
            current_->run();
            guard.lock();
            tellStopped();
            current_ = nullptr;
        }
    }
    void eraseWholeQueue() override { queue_.clear(); }
    void eraseFromQueue(HWND const&) override { queue_.clear(); }
    char const* threadName() const override { return "bench"; }
    TaskBase* taskInProgress() const override { return current_; }

    std::deque<BenchTask*> queue_;
    BenchTask* current_ = nullptr;
};

/// Tells when it ran.
struct TimedTask : BenchTask {
    void run() override {
        ran = Clock::now();
        done.set();
    }
    Clock::time_point ran;
    BareEvent done;
};

/// The least that hands a task to another thread through a queue: a queue under a lock of two swaps, and the bare event.
class BareQueue {
public:
    void insert(BenchTask* task) {
        lock();
        queue_.push_back(task);
        unlock();
        wake_.set();
    }
    /// Waits for the next task.
    BenchTask* next() {
        wake_.wait();
        lock();
        BenchTask* const task = queue_.front();
        queue_.pop_front();
        unlock();
        return task;
    }

private:
    void lock() {
        for (int free = 0; !word_.compare_exchange_strong(free, 1); free = 0) {}
    }
    void unlock() {
        int held = 1;
        word_.compare_exchange_strong(held, 0);
    }

    std::atomic<int> word_{0};
    std::deque<BenchTask*> queue_;
    BareEvent wake_;
};

/// Keeps this thread, and those that it starts, on one processor while it lives.
class OnOneProcessor {
public:
    OnOneProcessor() {
        sched_getaffinity(0, sizeof before_, &before_);
        int first = 0;
        while (first < CPU_SETSIZE - 1 && !CPU_ISSET(first, &before_)) ++first;
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(first, &one);
        sched_setaffinity(0, sizeof one, &one);
    }
    ~OnOneProcessor() { sched_setaffinity(0, sizeof before_, &before_); }
    OnOneProcessor(OnOneProcessor const&) = delete;
    OnOneProcessor& operator=(OnOneProcessor const&) = delete;

private:
    cpu_set_t before_{};
};

/// How long a worker sleeps through, from being handed a task to running it: the bare event, the bare queue and the
/// scheduler taken in turns, so that whatever else the machine does meets both alike, and on one processor, because waking a thread on
/// another takes several times as long and the system may place the two workers differently.
void handToSleepingWorker(benchmark::State& state) {
    OnOneProcessor const place;
    BareEvent wake;
    BareQueue queue;
    TimedTask bare, queued, scheduled;
    std::atomic<bool> ended = false;
    std::thread worker{[&] {
        for (;;) {
            wake.wait();
            if (ended) return;
            bare.run();
        }
    }};
    std::thread queueWorker{[&] {
        while (BenchTask* const task = queue.next()) task->run();
    }};
    BenchScheduler scheduler;

    auto const measure = [](TimedTask& task, auto handOver) {
        // The worker sleeps: to wake the thread that waits for it takes longer than to go to sleep itself.
        auto const start = Clock::now();
        handOver();
        task.done.wait();
        return std::chrono::duration<double, std::nano>(task.ran - start).count();
    };
    std::vector<double> bareTimes, queuedTimes, scheduledTimes;
    for (auto _ : state) {
        bareTimes.push_back(measure(bare, [&] { wake.set(); }));
        queuedTimes.push_back(measure(queued, [&] { queue.insert(&queued); }));
        scheduledTimes.push_back(measure(scheduled, [&] { scheduler.insert(scheduled); }));
    }
    ended = true;
    wake.set();
    worker.join();
    queue.insert(nullptr);
    queueWorker.join();

    auto const median = [](std::vector<double>& times) {
        auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    };
    state.counters["bare_ns"] = median(bareTimes);
    state.counters["queue_ns"] = median(queuedTimes);
    state.counters["orn_ns"] = median(scheduledTimes);
}

/// Counts down, and tells when it is through.
struct Countdown {
    std::int64_t left;
    BareEvent done;

    void step() {
        if (--left == 0) done.set();
    }
};

struct CountedTask : BenchTask {
    explicit CountedTask(Countdown& all) : countdown{all} {}
    void run() override { countdown.step(); }
    Countdown& countdown;
};

void queueAndRunScheduler(benchmark::State& state) {
    Countdown countdown{0, {}};
    CountedTask task{countdown};
    BenchScheduler scheduler;
    for (auto _ : state) {
        countdown.left = state.range(0);
        for (std::int64_t number = state.range(0); number > 0; --number) scheduler.insert(task);
        countdown.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void queueAndRunAsio(benchmark::State& state) {
    Countdown countdown{0, {}};
    CountedTask task{countdown};
    boost::asio::io_context context;
    auto work = boost::asio::make_work_guard(context);
    std::thread worker{[&] { context.run(); }};
    for (auto _ : state) {
        countdown.left = state.range(0);
        for (std::int64_t number = state.range(0); number > 0; --number)
            boost::asio::post(context, [&task] { static_cast<BenchTask&>(task).run(); });
        countdown.done.wait();
    }
    work.reset();
    worker.join();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}

BENCHMARK(handToSleepingWorker)->Iterations(20000)->UseRealTime();
BENCHMARK(queueAndRunAsio)->Arg(1000)->Arg(100000)->UseRealTime();
BENCHMARK(queueAndRunScheduler)->Arg(1000)->Arg(100000)->UseRealTime();
