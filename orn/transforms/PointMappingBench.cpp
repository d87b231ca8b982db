// needs: Eigen3::Eigen PkgConfig::cairo
#include "orn/transforms/PointMapping.h"

#include "orn/transforms/NonUniformTransform.h"

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <Eigen/Geometry>

#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr double rows[3][2] = {{1.25, 0.5}, {-0.75, 2}, {10, -20}};

template <typename P>
std::vector<P> points(std::size_t count) {
    std::mt19937 random{1};
    std::uniform_real_distribution<double> number{-1000, 1000};
    std::vector<P> all;
    for (std::size_t i = 0; i < count; ++i) {
        double const x = number(random);
        all.emplace_back(x, number(random));
    }
    return all;
}

template <typename P, typename Body>
void mapAll(benchmark::State& state, Body body) {
    std::vector<P> const in = points<P>(static_cast<std::size_t>(state.range(0)));
    std::vector<P> out = in;
    for (auto _ : state) {
        body(in, out);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

using Points = std::vector<Point<2>>;

/// Whose class the compiler cannot know.
std::unique_ptr<Transform<2>> someTransform() {
    std::unique_ptr<Transform<2>> t{NonUniformTransform<2>::createFromPod(rows).clone()};
    benchmark::DoNotOptimize(t);
    return t;
}

void bulk(benchmark::State& state) {
    auto const t = someTransform();
    mapAll<Point<2>>(state, [&t](Points const& in, Points& out) { mapPoints(*t, in, out); });
}

void bulkMemcpy(benchmark::State& state) {
    mapAll<Point<2>>(state, [](Points const& in, Points& out) {
        std::memcpy(static_cast<void*>(out.data()), in.data(), in.size() * sizeof in[0]);
    });
}

void bulkEigenAffine2d(benchmark::State& state) {
    Eigen::Affine2d t;
    t.matrix() << rows[0][0], rows[1][0], rows[2][0], rows[0][1], rows[1][1], rows[2][1], 0, 0, 1;
    benchmark::DoNotOptimize(t);
    using P = Eigen::Vector2d;
    mapAll<P>(state, [&t](std::vector<P> const& in, std::vector<P>& out) {
        for (std::size_t i = 0; i < in.size(); ++i) out[i] = t * in[i];
    });
}

void bulkCairo(benchmark::State& state) {
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, rows[0][0], rows[0][1], rows[1][0], rows[1][1], rows[2][0], rows[2][1]);
    struct P {
        P(double a, double b) : x{a}, y{b} {}
        double x, y;
    };
    mapAll<P>(state, [&matrix](std::vector<P> const& in, std::vector<P>& out) {
        for (std::size_t i = 0; i < in.size(); ++i) {
            out[i] = in[i];
            cairo_matrix_transform_point(&matrix, &out[i].x, &out[i].y);
        }
    });
}

/// The plain product, with the matrix in plain sight.
struct Inlined {
    double m[3][2];
    friend Point<2> operator*(Point<2> const& p, Inlined const& t) {
        return {p.x() * t.m[0][0] + p.y() * t.m[1][0] + t.m[2][0], p.x() * t.m[0][1] + p.y() * t.m[1][1] + t.m[2][1]};
    }
};

std::unique_ptr<Inlined> someInlined() {
    auto t = std::make_unique<Inlined>();
    std::memcpy(t->m, rows, sizeof rows);
    benchmark::DoNotOptimize(t);
    return t;
}

template <typename T>
void storeEach(benchmark::State& state, T const& t) {
    mapAll<Point<2>>(state, [&t](Points const& in, Points& out) {
        for (std::size_t i = 0; i < in.size(); ++i) out[i] = in[i] * t;
    });
}

/// Each point depends on the image of the one before, as along a path.
template <typename T>
void walk(benchmark::State& state, T const& t) {
    mapAll<Point<2>>(state, [&t](Points const& in, Points& out) {
        Point<2> at;
        for (Point<2> const& p : in) at = (p + (at - Point<2>{}) * 1e-3) * t;
        out[0] = at;
    });
}

void storeEachThroughTheBase(benchmark::State& state) { storeEach(state, *someTransform()); }
void storeEachInlined(benchmark::State& state) { storeEach(state, *someInlined()); }
void walkThroughTheBase(benchmark::State& state) { walk(state, *someTransform()); }
void walkInlined(benchmark::State& state) { walk(state, *someInlined()); }

/// The least that a call through a table costs in such loops: it takes and gives what the transform's does. There are two
/// classes so that the compiler does not guess which.
struct Table {
    virtual ~Table() = default;
    virtual Point<2> get(Point<2> const& p) const = 0;
    friend Point<2> operator*(Point<2> const& p, Table const& t) { return t.get(p); }
};
struct Constant : Table {
    Point<2> get(Point<2> const&) const override { return {1.5, 2.5}; }
};
struct Same : Table {
    Point<2> get(Point<2> const& p) const override { return {p.x(), p.y()}; }
};

template <typename T>
std::unique_ptr<Table> someTable() {
    std::unique_ptr<Table> t = std::make_unique<T>();
    benchmark::DoNotOptimize(t);
    return t;
}

void storeEachThroughAnEmptyCall(benchmark::State& state) { storeEach(state, *someTable<Constant>()); }
void walkThroughAnEmptyCall(benchmark::State& state) { walk(state, *someTable<Same>()); }

constexpr int small = 1000;
constexpr int large = 1000000;
BENCHMARK(bulk)->Arg(small)->Arg(large);
BENCHMARK(bulkMemcpy)->Arg(small)->Arg(large);
BENCHMARK(bulkEigenAffine2d)->Arg(small)->Arg(large);
BENCHMARK(bulkCairo)->Arg(small)->Arg(large);
BENCHMARK(storeEachThroughTheBase)->Arg(small)->Arg(large);
BENCHMARK(storeEachInlined)->Arg(small)->Arg(large);
BENCHMARK(storeEachThroughAnEmptyCall)->Arg(small);
BENCHMARK(walkThroughTheBase)->Arg(small);
BENCHMARK(walkInlined)->Arg(small);
BENCHMARK(walkThroughAnEmptyCall)->Arg(small);

}
