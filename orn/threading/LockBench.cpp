// needs: absl::synchronization
#include "orn/threading/Lock.h"

#include <absl/synchronization/mutex.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <shared_mutex>

namespace {

struct Word {
    LONG volatile word = 0;

    void lock() {
        static_cast<void>(
            readWriteLockLock(word, readWriteLockExclusive, readWriteLockAnyHolder, readWriteLockInfinite));
    }
    void unlock() { readWriteLockUnlock(word, readWriteLockExclusive); }
    void lock_shared() {
        static_cast<void>(readWriteLockLock(word, readWriteLockShared, readWriteLockWriter, readWriteLockInfinite));
    }
    void unlock_shared() { readWriteLockUnlock(word, readWriteLockShared); }
};

struct AbslMutex {
    absl::Mutex mutex;

    void lock() { mutex.Lock(); }
    void unlock() { mutex.Unlock(); }
    void lock_shared() { mutex.ReaderLock(); }
    void unlock_shared() { mutex.ReaderUnlock(); }
};

template <typename Mutex>
void uncontendedShared(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    for (auto _ : state) {
        mutex.lock_shared();
        benchmark::ClobberMemory();
        mutex.unlock_shared();
    }
}

template <typename Mutex>
void uncontendedExclusive(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}

std::uint64_t churn(std::uint64_t value, int times) {
    for (; times > 0; --times) value = value * 6364136223846793005u + 1442695040888963407u;
    return value;
}

/// How often to churn for 20 ns: the fastest of several measurements.
int times20ns() {
    using Clock = std::chrono::steady_clock;
    constexpr int many = 100'000;
    double fastest = 1e9;
    for (int attempt = 0; attempt < 20; ++attempt) {
        auto const start = Clock::now();
        benchmark::DoNotOptimize(churn(static_cast<std::uint64_t>(attempt), many));
        fastest = std::min(fastest, std::chrono::duration<double, std::nano>{Clock::now() - start}.count());
    }
    return static_cast<int>(20.0 * many / fastest + 0.5);
}

template <typename Mutex>
void mostlyShared(benchmark::State& state) {
    alignas(64) static Mutex mutex;
    static int const times = times20ns();
    std::uint32_t random = 12345u + static_cast<std::uint32_t>(state.thread_index());
    for (auto _ : state) {
        random = random * 1664525u + 1013904223u;
        if ((random >> 16) % 20 == 0) {
            std::lock_guard const lock{mutex};
            benchmark::DoNotOptimize(churn(random, times));
        } else {
            std::shared_lock const lock{mutex};
            benchmark::DoNotOptimize(churn(random, times));
        }
    }
}

BENCHMARK(uncontendedShared<Word>);
BENCHMARK(uncontendedShared<std::shared_mutex>);
BENCHMARK(uncontendedExclusive<Word>);
BENCHMARK(uncontendedExclusive<std::shared_mutex>);
BENCHMARK(mostlyShared<Word>)->Threads(2)->UseRealTime();
BENCHMARK(mostlyShared<std::shared_mutex>)->Threads(2)->UseRealTime();
BENCHMARK(mostlyShared<AbslMutex>)->Threads(2)->UseRealTime();

}
