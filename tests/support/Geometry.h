/// What the tests of geometry share: comparisons, and values as they are written.
#pragma once

#include "orn/geometry/Matrix.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
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

/// Bit for bit, except that one NaN is as good as another: of a double, and of what holds doubles only.
template <class T>
bool sameBits(T const& a, T const& b) {
    using Numbers = std::array<double, sizeof(T) / sizeof(double)>;
    return std::ranges::equal(std::bit_cast<Numbers>(a), std::bit_cast<Numbers>(b), [](double x, double y) {
        return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y) || (std::isnan(x) && std::isnan(y));
    });
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
