// The arc functions beside their closed formulas through libm, which lose digits where the functions do not.
#include "orn/geometry/ArcFunctions.h"

#include "orn/text/CSVReader.h"
#include "orn/text/Numbers.h"
#include "orn/text/TextReader.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Bulges = std::vector<double>;
constexpr std::size_t count = 1 << 16;

// From nearly straight to nearly full circles, in an order that no predictor learns.
Bulges wideMix() {
    std::mt19937 random{11};
    std::uniform_real_distribution<double> exponent{-5, 1.5};
    Bulges all(count);
    for (double& b : all) b = (random() & 1 ? -1 : 1) * std::pow(10, exponent(random));
    return all;
}

// The bulges of the example drawings, more than a third of them straight, again in an order that no predictor learns.
Bulges drawings() {
    Bulges found;
    for (wchar_t const* const name : {L"gasket.csv", L"gears.csv", L"lettering.csv", L"plan.csv"}) {
        std::string const folder = ORN_DRAWINGS;
        std::unique_ptr<ORN::TextReader> const lines{
            ORN::TextReader::create(std::wstring{folder.begin(), folder.end()} + name)};
        ORN::CSVReader rows{*lines, L"bulge"};
        double bulge = 0;
        for (std::vector<std::wstring> row; rows.read(row);)
            if (isDouble(&bulge, row[0].data(), row[0].size())) found.push_back(bulge);
    }
    std::mt19937 random{12};
    Bulges all(count);
    for (double& b : all) b = found.at(random() % found.size());
    return all;
}

Bulges straight() { return Bulges(count, 0.0); }

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

template <auto function, auto bulges>
void length(benchmark::State& state) {
    Bulges const all = bulges();
    for (auto _ : state) {
        double sum = 0;
        for (double const b : all) sum += function(b);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}

template <auto function>
void split(benchmark::State& state) {
    Bulges const all = wideMix();
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

BENCHMARK(length<closedLength, drawings>)->Name("length/drawings/closed formula");
BENCHMARK(length<ORNArcLength, drawings>)->Name("length/drawings/ORNArcLength");
BENCHMARK(length<closedLength, wideMix>)->Name("length/wide mix/closed formula");
BENCHMARK(length<ORNArcLength, wideMix>)->Name("length/wide mix/ORNArcLength");
BENCHMARK(length<closedLength, straight>)->Name("length/straight/closed formula");
BENCHMARK(length<ORNArcLength, straight>)->Name("length/straight/ORNArcLength");
BENCHMARK(split<closedSplit>)->Name("split/closed formula");
BENCHMARK(split<ORNArcSplit>)->Name("split/ORNArcSplit");

}
