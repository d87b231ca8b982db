// needs: Boost::headers
#include "orn/events/EventSubscription.h"
#include "tools/SecondThread.h"

#include <benchmark/benchmark.h>

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

BENCHMARK(list)->Arg(1)->Arg(10)->Arg(1000);
BENCHMARK(signals2)->Arg(1)->Arg(10)->Arg(1000);

}
