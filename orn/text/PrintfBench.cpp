#include "orn/text/Printf.h"

#include <benchmark/benchmark.h>

#include <cwchar>
#include <random>
#include <vector>

namespace {

struct Row {
    int first, second;
    wchar_t const* text;
    double x, y;
};

std::vector<Row> const& rows() {
    static std::vector<Row> const all = [] {
        static constexpr wchar_t const* names[] = {L"axis", L"a wall of the floor plan", L"0", L"hidden lines, thin"};
        std::mt19937_64 random{21};
        std::uniform_real_distribution<double> unit{-1000, 1000};
        std::vector<Row> made;
        for (int n = 0; n < 20000; ++n)
            made.push_back({static_cast<int>(random() >> (33 + random() % 30)), static_cast<int>(random() % 1000),
                            names[random() % 4], unit(random), unit(random)});
        return made;
    }();
    return all;
}

template <typename Write>
void writeAll(benchmark::State& state, Write write) {
    for (auto _ : state)
        for (Row const& row : rows()) {
            std::wstring const text = write(row);
            benchmark::DoNotOptimize(text.data());
        }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows().size()));
}

/// What a caller writes without the library: the runtime's formatter, then the copy.
template <typename... Arguments>
std::wstring viaRuntime(wchar_t const* format, Arguments... arguments) {
    wchar_t buffer[1024];
    int const length = std::swprintf(buffer, 1024, format, arguments...);
    return {buffer, static_cast<std::size_t>(length)};
}

void integersAndText(benchmark::State& state) {
    writeAll(state, [](Row const& row) {
        return stringPrintf(L"entity %d of layer %d: %s", row.first, row.second, row.text);
    });
}
void integersAndTextViaRuntime(benchmark::State& state) {
    writeAll(state,
             [](Row const& row) { return viaRuntime(L"entity %d of layer %d: %ls", row.first, row.second, row.text); });
}
void doubles(benchmark::State& state) {
    writeAll(state, [](Row const& row) { return stringPrintf(L"%.3f %.3f", row.x, row.y); });
}
void doublesViaRuntime(benchmark::State& state) {
    writeAll(state, [](Row const& row) { return viaRuntime(L"%.3f %.3f", row.x, row.y); });
}

BENCHMARK(integersAndText)->Name("ints and a string/stringPrintf");
BENCHMARK(integersAndTextViaRuntime)->Name("ints and a string/std::swprintf and the copy");
BENCHMARK(doubles)->Name("two %.3f/stringPrintf");
BENCHMARK(doublesViaRuntime)->Name("two %.3f/std::swprintf and the copy");

}
