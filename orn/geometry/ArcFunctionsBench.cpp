// The arc functions beside their closed formulas through libm, which lose digits where the functions do not. The
// relative error of ORNArcLength is at most 2 units in the last place for every bulge, that of ORNArcSplit's outputs 4,
// and its height is within 1e-15 chords more about the bulge 0.1; ArcFunctionsTest holds them to that.
#include "orn/geometry/ArcFunctions.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

// Bulges of a drawing: from nearly straight to nearly full circles, in an order that no predictor learns.
std::vector<double> bulges() {
    std::mt19937 random{11};
    std::uniform_real_distribution<double> exponent{-5, 1.5};
    std::vector<double> all(1 << 16);
    for (double& b : all) b = (random() & 1 ? -1 : 1) * std::pow(10, exponent(random));
    return all;
}

double closedLength(double b) { return std::atan(b) * (b * b + 1) / b; }

void closedSplit(double t, double b, double* first, double* height, double* along, double* tangentY, double* tangentX,
                 double* second) {
    double const a = std::atan(b), phi = 2 * t * a, r = (1 / b + b) * 0.25;
    *first = std::tan((t + 1) * a * 0.5);
    *second = std::tan((1 - t) * a * 0.5);
    *tangentY = -std::sin(phi);
    *tangentX = std::cos(phi);
    *along = r * std::sin(phi);
    *height = r * std::cos(phi) - (1 / b - b) * 0.25;
}

template <auto function>
void length(benchmark::State& state) {
    auto const all = bulges();
    for (auto _ : state) {
        double sum = 0;
        for (double const b : all) sum += function(b);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}

template <auto function>
void split(benchmark::State& state) {
    auto const all = bulges();
    for (auto _ : state) {
        double sum = 0, t = -1;
        for (double const b : all) {
            double first, height, along, tangentY, tangentX, second;
            function(t, b, &first, &height, &along, &tangentY, &tangentX, &second);
            sum += first + height + along + tangentY + tangentX + second;
            t += 2.0 / (1 << 16);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}

BENCHMARK(length<closedLength>)->Name("length/closed formula");
BENCHMARK(length<ORNArcLength>)->Name("length/ORNArcLength");
BENCHMARK(split<closedSplit>)->Name("split/closed formula");
BENCHMARK(split<ORNArcSplit>)->Name("split/ORNArcSplit");

}
