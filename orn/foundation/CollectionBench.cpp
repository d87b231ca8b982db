#include "orn/foundation/Collection.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <cstdint>
#include <deque>

namespace {

constexpr std::size_t perChunk = 4096 / sizeof(std::uint64_t);  // the peer's own make has chunks of 512 bytes
constexpr std::uint64_t elements = 1'000'000;

template <typename Sequence>
void push(benchmark::State& state) {
    // Freed memory stays with the process: it is the sequence that is measured, not the system's pages.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    for (auto _ : state) {
        Sequence sequence;
        for (std::uint64_t i = 0; i < elements; ++i) sequence.push_back(i);
        benchmark::DoNotOptimize(sequence.back());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(elements));
}

template <typename Sequence>
void sum(benchmark::State& state) {
    Sequence sequence;
    for (std::uint64_t i = 0; i < elements; ++i) sequence.push_back(i);
    for (auto _ : state) {
        std::uint64_t total = 0;
        for (std::uint64_t const value : sequence) total += value;
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(elements));
}

BENCHMARK(push<ORN::Collection<std::uint64_t, perChunk>>)->Name("collection");
BENCHMARK(push<std::deque<std::uint64_t>>)->Name("deque");
BENCHMARK(sum<ORN::Collection<std::uint64_t, perChunk>>)->Name("iterate/collection");
BENCHMARK(sum<std::deque<std::uint64_t>>)->Name("iterate/deque");

}
