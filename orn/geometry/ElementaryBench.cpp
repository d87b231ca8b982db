// The elementary functions beside the C library's, which are a unit in the last place or two less exact at the worst.
// needs: Elementary.cpp
#include "orn/geometry/Elementary.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

struct Arguments {
    double x, y;
};

// A quarter each: of a turn or less, of many turns, of magnitudes from 2^-20 to 2^20, and of great ones, in an order
// that no predictor learns.
std::vector<Arguments> mixed() {
    std::mt19937_64 random{5};
    auto const between = [&random](double from, double to) {
        return std::uniform_real_distribution<double>{from, to}(random);
    };
    std::vector<Arguments> all(1 << 16);
    for (std::size_t i = 0; i < all.size(); ++i) {
        double* const both[] = {&all[i].x, &all[i].y};
        for (double* const x : both) {
            if (i % 4 < 2) *x = i % 4 == 0 ? between(-3.2, 3.2) : between(-5000, 5000);
            if (i % 4 >= 2)
                *x = std::copysign(std::exp2(i % 4 == 2 ? between(-20, 20) : between(20, 80)), between(-1, 1));
        }
    }
    std::shuffle(all.begin(), all.end(), random);
    return all;
}

// One angle after another of a drawing: a turn or less.
std::vector<Arguments> turns() {
    std::mt19937_64 random{6};
    std::uniform_real_distribution<double> angle{-3.2, 3.2};
    std::vector<Arguments> all(1 << 16);
    for (auto& [x, y] : all) x = angle(random), y = angle(random);
    return all;
}

template <auto arguments, auto function>
void each(benchmark::State& state) {
    auto const all = arguments();
    for (auto _ : state)
        for (auto const& [x, y] : all) benchmark::DoNotOptimize(function(x, y));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}

ORN::SineCosine sinesOfTheCLibrary(double x, double) {
    ORN::SineCosine both;
    sincos(x, &both.sine, &both.cosine);
    return both;
}

#define COMPARE(name, here, there)                                     \
    BENCHMARK(each<mixed, here>)->Name("mixed/" name "/here");         \
    BENCHMARK(each<mixed, there>)->Name("mixed/" name "/C library");   \
    BENCHMARK(each<turns, here>)->Name("within a turn/" name "/here"); \
    BENCHMARK(each<turns, there>)->Name("within a turn/" name "/C library")

COMPARE(
    "sine and cosine", [](double x, double) { return ORN::sineAndCosine(x); }, sinesOfTheCLibrary);
COMPARE(
    "tangent", [](double x, double) { return ORN::tangent(x); }, [](double x, double) { return std::tan(x); });
COMPARE(
    "arc tangent", [](double x, double) { return ORN::arcTangent(x); }, [](double x, double) { return std::atan(x); });
COMPARE(
    "arc tangent of two", [](double x, double y) { return ORN::arcTangent(y, x); },
    [](double x, double y) { return std::atan2(y, x); });
COMPARE(
    "cube root", [](double x, double) { return ORN::cubeRoot(x); }, [](double x, double) { return std::cbrt(x); });
COMPARE(
    "hypotenuse", [](double x, double y) { return ORN::hypotenuse(x, y); },
    [](double x, double y) { return std::hypot(x, y); });

}
