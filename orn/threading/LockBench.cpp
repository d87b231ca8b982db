// needs: absl::synchronization
#include "orn/threading/Lock.h"

#include "tools/SecondThread.h"

#include <absl/synchronization/mutex.h>
#include <benchmark/benchmark.h>

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <vector>

namespace {

struct Word {
    LONG volatile word = 0;
    LockableWord lockable{word};

    void lock() { lockable.lock(); }
    void unlock() { lockable.unlock(); }
    void lock_shared() { lockable.lock_shared(); }
    void unlock_shared() { lockable.unlock_shared(); }
};

struct AbslMutex {
    absl::Mutex mutex;

    void lock() { mutex.Lock(); }
    void unlock() { mutex.Unlock(); }
    void lock_shared() { mutex.ReaderLock(); }
    void unlock_shared() { mutex.ReaderUnlock(); }
};

/// No lock: the two swaps that the shortest one would do, which cannot fail here.
struct TwoSwaps {
    std::atomic<std::int32_t> word{0};

    void lock() { swap(0, readWriteLockExclusive); }
    void unlock() { swap(readWriteLockExclusive, 0); }
    void lock_shared() { swap(0, readWriteLockShared); }
    void unlock_shared() { swap(readWriteLockShared, 0); }

private:
    void swap(std::int32_t from, std::int32_t to) {
        if (!word.compare_exchange_strong(from, to)) std::abort();
    }
};

/// No lock: one swap on the way in and one on the way out, each repeated until no other thread was faster. No lock of one
/// word that is changed by swaps does less.
struct RepeatedSwaps {
    std::atomic<std::int32_t> word{0};

    void lock() { add(readWriteLockShared); }
    void unlock() { add(-readWriteLockShared); }
    void lock_shared() { add(readWriteLockShared); }
    void unlock_shared() { add(-readWriteLockShared); }

private:
    void add(std::int32_t number) {
        std::int32_t seen = word.load();
        while (!word.compare_exchange_strong(seen, seen + number)) {}
    }
};

template <typename Mutex>
void visitShared(benchmark::State& state, Mutex& mutex) {
    SecondThread const second;
    for (auto _ : state) {
        mutex.lock_shared();
        benchmark::ClobberMemory();
        mutex.unlock_shared();
    }
}

template <typename Mutex>
void uncontendedShared(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    visitShared(state, mutex);
}

template <typename Mutex>
void besideAReader(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    std::shared_lock const reader{mutex};
    visitShared(state, mutex);
}

template <typename Mutex>
void uncontendedExclusive(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    SecondThread const second;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}

using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

std::uint64_t churn(std::uint64_t value, int times) {
    for (; times > 0; --times) value = value * 6364136223846793005u + 1442695040888963407u;
    return value;
}

/// How often to churn for 20 ns: the fastest of several measurements.
int times20ns() {
    constexpr int many = 100'000;
    double fastest = 1e9;
    for (int attempt = 0; attempt < 20; ++attempt) {
        auto const start = Clock::now();
        benchmark::DoNotOptimize(churn(static_cast<std::uint64_t>(attempt), many));
        fastest = std::min(fastest, Nanoseconds{Clock::now() - start}.count());
    }
    return static_cast<int>(20.0 * many / fastest + 0.5);
}

/// The processors that the process may use, asked before any thread is moved.
cpu_set_t const& allowedProcessors() {
    static cpu_set_t const allowed = [] {
        cpu_set_t set;
        CPU_ZERO(&set);
        sched_getaffinity(0, sizeof set, &set);
        return set;
    }();
    return allowed;
}

/// Moves the calling thread to the processor of this number among those that the process may use.
bool moveTo(int number) {
    cpu_set_t const& allowed = allowedProcessors();
    cpu_set_t one;
    CPU_ZERO(&one);
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (!CPU_ISSET(processor, &allowed) || number-- > 0) continue;
        CPU_SET(static_cast<std::size_t>(processor), &one);
        return pthread_setaffinity_np(pthread_self(), sizeof one, &one) == 0;
    }
    return false;
}

/// How often the calling thread has slept, and how often it was stopped for another.
struct Switches {
    long slept, stopped;

    static Switches now() {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return {usage.ru_nvcsw, usage.ru_nivcsw};
    }
};

/// A mutex that two threads visit, 95 % of the times shared, and stay inside for 20 ns.
template <typename Mutex>
class Visited {
public:
    /// Visits it until `done`, and counts.
    template <typename Done>
    void visit(std::atomic<long>& visits, std::uint32_t random, Done done) {
        static int const times = times20ns();
        for (long count = 1; !done(); ++count) {
            random = random * 1664525u + 1013904223u;
            if ((random >> 16) % 20 == 0) {
                std::lock_guard const lock{mutex_};
                benchmark::DoNotOptimize(churn(random, times));
            } else {
                std::shared_lock const lock{mutex_};
                benchmark::DoNotOptimize(churn(random, times));
            }
            visits.store(count, std::memory_order_relaxed);
        }
    }

    std::vector<double> nanoseconds;  // a visit, in each slice
    long sleeps = 0, disturbed = 0;

private:
    alignas(64) Mutex mutex_;
};

/// Two threads on two processors. What is measured are short slices of time in which no other program stopped either of
/// them, because only then do both want the mutex at the same time.
class Pair {
public:
    Pair() : other_{[this](std::stop_token const& stop) { serve(stop); }} { moveTo(0); }
    ~Pair() {
        other_.request_stop();
        other_.join();
    }

    template <typename Mutex>
    void measure(Visited<Mutex>& visited) {
        for (int tries = 0; tries < 20; ++tries)
            if (slice(visited)) return;
        ++visited.disturbed;
    }

private:
    static constexpr long visitsASlice = 300;

    template <typename Mutex>
    bool slice(Visited<Mutex>& visited) {
        mine_ = theirs_ = 0;
        work_ = [&visited, this] {
            visited.visit(theirs_, 2, [this] { return done_.load(std::memory_order_relaxed); });
        };
        done_ = false;
        wanted_.fetch_add(1);
        while (started_ != wanted_) {}

        Switches const before = Switches::now();
        auto const start = Clock::now();
        visited.visit(mine_, 1, [this] { return mine_.load(std::memory_order_relaxed) == visitsASlice; });
        double const time = Nanoseconds{Clock::now() - start}.count();
        Switches const after = Switches::now();
        long const visits = mine_ + theirs_;
        done_ = true;
        while (ended_ != wanted_) {}

        if (after.stopped != before.stopped || stopped_ != 0) return false;
        visited.nanoseconds.push_back(time / static_cast<double>(visits));
        visited.sleeps += after.slept - before.slept + slept_;
        return true;
    }

    void serve(std::stop_token const& stop) {
        moveTo(1);
        for (long turn = 1; !stop.stop_requested();) {
            if (wanted_ != turn) continue;
            Switches const before = Switches::now();
            started_ = turn;
            work_();
            Switches const after = Switches::now();
            slept_ = after.slept - before.slept;
            stopped_ = after.stopped - before.stopped;
            ended_ = turn++;
        }
    }

    std::function<void()> work_;
    alignas(64) std::atomic<long> mine_ = 0;
    alignas(64) std::atomic<long> theirs_ = 0;
    alignas(64) std::atomic<long> wanted_ = 0;
    std::atomic<long> started_ = 0, ended_ = 0, slept_ = 0, stopped_ = 0;
    std::atomic<bool> done_ = false;
    std::jthread other_;
};

double median(std::vector<double>& values) {
    if (values.empty()) return 0;
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The same slices of each mutex in turn, so that what disturbs one disturbs all.
void mostlyShared(benchmark::State& state) {
    if (std::thread::hardware_concurrency() < 2) return state.SkipWithError("needs two processors");
    Pair pair;
    Visited<Word> word;
    Visited<std::shared_mutex> standard;
    Visited<AbslMutex> absl;
    Visited<RepeatedSwaps> swaps;
    for (auto _ : state) {
        pair.measure(word);
        pair.measure(standard);
        pair.measure(absl);
        pair.measure(swaps);
    }
    auto const report = [&](std::string const& name, auto& visited) {
        state.counters[name + "_ns"] = median(visited.nanoseconds);
        state.counters[name + "_disturbed"] = static_cast<double>(visited.disturbed);
        state.counters[name + "_sleeps"] =
            static_cast<double>(visited.sleeps) / static_cast<double>(state.iterations());
    };
    report("orn", word);
    report("standard", standard);
    report("absl", absl);
    report("swaps", swaps);
}

BENCHMARK(uncontendedShared<Word>);
BENCHMARK(uncontendedShared<TwoSwaps>);
BENCHMARK(uncontendedShared<std::shared_mutex>);
BENCHMARK(uncontendedExclusive<Word>);
BENCHMARK(uncontendedExclusive<TwoSwaps>);
BENCHMARK(uncontendedExclusive<std::shared_mutex>);
BENCHMARK(besideAReader<Word>);
BENCHMARK(besideAReader<std::shared_mutex>);
BENCHMARK(mostlyShared)->Iterations(30)->UseRealTime();

}
