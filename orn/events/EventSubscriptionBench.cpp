// needs: Boost::headers
#include "orn/events/EventSubscription.h"
#include "tools/SecondThread.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <boost/signals2.hpp>
#include <memory>
#include <vector>

namespace {

void list(benchmark::State& state) {
    SecondThread const second;
    auto const events = EVSubscriptionList<int>::create();
    int last = 0;
    auto const callback = [&last](int value) { last = value; };
    std::vector<std::unique_ptr<EVCallableSubscription<int, decltype(callback)>>> subscriptions;
    for (int i = 0; i < state.range(0); ++i)
        subscriptions.push_back(std::make_unique<EVCallableSubscription<int, decltype(callback)>>(*events, callback));
    for (auto _ : state) {
        events->notify(1);
        benchmark::DoNotOptimize(last);
    }
}

/// One of eight classes that are alike.
template <int Number>
struct Callback {
    void operator()(int value) const { *last = value + Number; }
    int* last;
};

void mixedList(benchmark::State& state) {
    SecondThread const second;
    auto const events = EVSubscriptionList<int>::create();
    int last = 0;
    std::vector<std::unique_ptr<EVSubscriptionBase>> subscriptions;
    auto const add = [&]<int... Numbers>(std::integer_sequence<int, Numbers...>) {
        (subscriptions.push_back(
             std::make_unique<EVCallableSubscription<int, Callback<Numbers>>>(*events, Callback<Numbers>{&last})),
         ...);
    };
    while (static_cast<int>(subscriptions.size()) < state.range(0)) add(std::make_integer_sequence<int, 8>{});
    for (auto _ : state) {
        events->notify(1);
        benchmark::DoNotOptimize(last);
    }
}

void signals2(benchmark::State& state) {
    SecondThread const second;
    boost::signals2::signal<void(int)> events;
    int last = 0;
    for (int i = 0; i < state.range(0); ++i) events.connect([&last](int value) { last = value; });
    for (auto _ : state) {
        events(1);
        benchmark::DoNotOptimize(last);
    }
}

struct Called {
    virtual ~Called() = default;
    virtual void call(int value) = 0;
};
struct Storing : Called {
    explicit Storing(int& stored) : last{&stored} {}
    void call(int value) override { *last = value; }
    int* last;
};
/// Here so that the compiler cannot guess what a call reaches.
struct Adding : Called {
    explicit Adding(int& sum) : last{&sum} {}
    void call(int value) override { *last += value; }
    int* last;
};

std::unique_ptr<Called> made(int number, int& last) {
    if (number == 1'000'000) return std::make_unique<Adding>(last);
    return std::make_unique<Storing>(last);
}

/// No lock, no suppression, no recovery: a virtual call of each.
void vector(benchmark::State& state) {
    int last = 0;
    std::vector<std::unique_ptr<Called>> called;
    for (int i = 0; i < state.range(0); ++i) called.push_back(made(i, last));
    for (auto _ : state) {
        for (auto const& one : called) one->call(1);
        benchmark::DoNotOptimize(last);
    }
}

/// One of eight classes that are alike.
template <int Number>
struct Numbered : Called {
    explicit Numbered(int& stored) : last{&stored} {}
    void call(int value) override { *last = value + Number; }
    int* last;
};

void mixedVector(benchmark::State& state) {
    int last = 0;
    std::vector<std::unique_ptr<Called>> called;
    auto const add = [&]<int... Numbers>(std::integer_sequence<int, Numbers...>) {
        (called.push_back(std::make_unique<Numbered<Numbers>>(last)), ...);
    };
    while (static_cast<int>(called.size()) < state.range(0)) add(std::make_integer_sequence<int, 8>{});
    for (auto _ : state) {
        for (auto const& one : called) one->call(1);
        benchmark::DoNotOptimize(last);
    }
}

/// What the shortest announcement cannot do without: the lock's two swaps and a virtual call.
void twoSwapsAndACall(benchmark::State& state) {
    std::atomic<int> word{0};
    int last = 0;
    benchmark::DoNotOptimize(last);
    std::unique_ptr<Called> const called = made(last, last);
    for (auto _ : state) {
        int free = 0, held = 1;
        word.compare_exchange_strong(free, 1);
        called->call(1);
        word.compare_exchange_strong(held, 0);
        benchmark::DoNotOptimize(last);
    }
}

BENCHMARK(list)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(mixedList)->Arg(1000);
BENCHMARK(signals2)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(vector)->Arg(1000);
BENCHMARK(mixedVector)->Arg(1000);
BENCHMARK(twoSwapsAndACall);

}
