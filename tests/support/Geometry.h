/// What the tests of geometry share: random values, comparisons, and values as they are written.
#pragma once

#include "orn/geometry/Matrix.h"
#include "orn/geometry/Point.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <sstream>
#include <string>

template <int N>
using Dimension = std::integral_constant<int, N>;
using PlaneAndSpace = testing::Types<Dimension<2>, Dimension<3>>;

template <typename... T>
std::wstring written(T const&... values) {
    std::wostringstream os;
    (os << ... << values);
    return os.str();
}

/// Bit for bit, except that one NaN is as good as another.
inline bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

template <int N>
void expectNear(Point<N> const& actual, Point<N> const& expected, double tolerance) {
    for (int i = 0; i < N; ++i) EXPECT_NEAR(actual[i], expected[i], tolerance) << "coordinate " << i;
}

template <int N>
void expectNear(Matrix<N> const& actual, Matrix<N> const& expected, double tolerance) {
    for (int i = 0; i < N; ++i)
        for (int j = 0; j < N; ++j) EXPECT_NEAR(actual[i][j], expected[i][j], tolerance) << i << ',' << j;
}

/// Numbers, vectors and points; the same ones for a seed on every system.
class RandomGeometry {
public:
    explicit RandomGeometry(unsigned int seed) : engine_{seed} {}

    double number(double lo, double hi) { return std::uniform_real_distribution<double>{lo, hi}(engine_); }
    int whole(int lo, int hi) { return std::uniform_int_distribution<int>{lo, hi}(engine_); }

    /// Of either sign, from 10^lo to 10^hi.
    double magnitude(double lo, double hi) { return (whole(0, 1) == 0 ? -1 : 1) * std::pow(10, number(lo, hi)); }

    template <int N>
    Vector<N> vector(double size = 10) {
        double c[N];
        for (double& component : c) component = number(-size, size);
        return Vector<N>{c};
    }
    template <int N>
    Point<N> point(double size = 10) {
        return Point<N>{} + vector<N>(size);
    }

private:
    std::mt19937 engine_;
};
