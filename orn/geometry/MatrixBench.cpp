// needs: Eigen3::Eigen glm::glm
#include "orn/geometry/Matrix.h"

#include <benchmark/benchmark.h>
#include <Eigen/Dense>
#include <glm/glm.hpp>

#include <cstddef>
#include <random>
#include <vector>

namespace {

constexpr std::size_t count = 4096;

/// Varied, so that no predictor learns which rows become pivots.
template <int N>
std::vector<Matrix<N>> matrices() {
    std::mt19937 random{1};
    std::uniform_real_distribution<double> number{-10, 10};
    std::vector<Matrix<N>> all;
    for (std::size_t i = 0; i < count; ++i) {
        double rows[N][N];
        for (auto& row : rows)
            for (double& element : row) element = number(random);
        all.emplace_back(rows);
    }
    return all;
}

template <typename Peer, int N>
std::vector<Peer> converted() {
    std::vector<Peer> all;
    for (Matrix<N> const& m : matrices<N>()) {
        Peer peer;
        for (int i = 0; i < N; ++i)
            for (int j = 0; j < N; ++j)
                if constexpr (N == 4)
                    peer(i, j) = m[i][j];
                else
                    peer[j][i] = m[i][j];
        all.push_back(peer);
    }
    return all;
}

template <typename M, typename Inverse>
void invertAll(benchmark::State& state, std::vector<M> const& in, Inverse inverse) {
    std::vector<M> out(in.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < in.size(); ++i) out[i] = inverse(in[i]);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * in.size()));
}

void inverse4(benchmark::State& state) {
    invertAll(state, matrices<4>(), [](Matrix<4> const& m) { return m.inverse(); });
}
BENCHMARK(inverse4);

void inverse4EigenPartialPivLU(benchmark::State& state) {
    using Peer = Eigen::Matrix<double, 4, 4, Eigen::RowMajor>;
    invertAll(state, converted<Peer, 4>(), [](Peer const& m) -> Peer { return m.partialPivLu().inverse(); });
}
BENCHMARK(inverse4EigenPartialPivLU);

void inverse3(benchmark::State& state) {
    invertAll(state, matrices<3>(), [](Matrix<3> const& m) { return m.inverse(); });
}
BENCHMARK(inverse3);

void invert3(benchmark::State& state) {
    std::vector<Matrix<3>> const in = matrices<3>();
    std::vector<Matrix<3>> out(in.size());
    for (auto _ : state) {
        invert(in, out);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * in.size()));
}
BENCHMARK(invert3);

void inverse3Glm(benchmark::State& state) {
    invertAll(state, converted<glm::dmat3, 3>(), [](glm::dmat3 const& m) { return glm::inverse(m); });
}
BENCHMARK(inverse3Glm);

/// The nine divisions of an exact adjugate alone.
void inverse3DivisionsOnly(benchmark::State& state) {
    invertAll(state, matrices<3>(), [](Matrix<3> const& m) {
        double quotients[3][3];
        m.packToPod(quotients);
        double const d = quotients[1][1];
        for (auto& row : quotients)
            for (double& element : row) element /= d;
        return Matrix<3>{quotients};
    });
}
BENCHMARK(inverse3DivisionsOnly);

}
