// needs: Boost::headers
#include "orn/events/EventSubscription.h"

#include <benchmark/benchmark.h>

#include <boost/signals2.hpp>
#include <memory>
#include <vector>

namespace {

void list(benchmark::State& state) {
    auto const events = EVSubscriptionList<int>::create();
    int sum = 0;
    auto const callback = [&sum](int value) { sum += value; };
    std::vector<std::unique_ptr<EVCallableSubscription<int, decltype(callback)>>> subscriptions;
    for (int i = 0; i < state.range(0); ++i)
        subscriptions.push_back(std::make_unique<EVCallableSubscription<int, decltype(callback)>>(*events, callback));
    for (auto _ : state) {
        events->notify(1);
        benchmark::DoNotOptimize(sum);
    }
}

void signals2(benchmark::State& state) {
    boost::signals2::signal<void(int)> events;
    int sum = 0;
    for (int i = 0; i < state.range(0); ++i) events.connect([&sum](int value) { sum += value; });
    for (auto _ : state) {
        events(1);
        benchmark::DoNotOptimize(sum);
    }
}

BENCHMARK(list)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(signals2)->Arg(1)->Arg(10)->Arg(1000);

}
