/// Values of geometry at random.
#pragma once

#include "orn/geometry/Matrix.h"
#include "orn/geometry/Point.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

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

/// Numbers of every kind, and what is made of them.
class AnyGeometry : public RandomGeometry {
public:
    using RandomGeometry::number;
    using RandomGeometry::RandomGeometry;
    virtual ~AnyGeometry() = default;

    bool chance(int oneIn) { return whole(1, oneIn) == 1; }

    /// Mostly a coordinate; now and then a whole number, one of any magnitude, or no ordinary one.
    virtual double number() {
        using limits = std::numeric_limits<double>;
        static constexpr double odd[] = {
            0.0, -0.0, 1.0, limits::infinity(), limits::max(), limits::denorm_min(), limits::quiet_NaN()};
        if (chance(40)) return odd[whole(0, 6)];
        if (chance(20)) return whole(-8, 8);
        return chance(20) ? binary(1, 2046) : number(-100, 100);
    }
    double bulge() { return chance(4) ? number() : binary(1023 - 30, 1023 + 5); }
    Angle angle() { return chance(2) ? Angle::degrees(number()) : Angle::radians(number()); }

    template <int N>
    Vector<N> vector() {
        double c[N];
        for (double& x : c) x = number();
        return Vector<N>{c};
    }
    template <int N>
    Point<N> point() {
        double c[N];
        vector<N>().packToPod(c);
        return Point<N>{c};
    }
    template <int N>
    Matrix<N> matrix() {
        double rows[N][N];
        for (auto& row : rows) vector<N>().packToPod(row);
        return Matrix<N>{rows};
    }

private:
    /// By the exponent as a double keeps it.
    double binary(int least, int most) {
        double const mantissa = chance(2) ? number(1, 2) : number(-2, -1);
        return mantissa * std::bit_cast<double>(static_cast<std::uint64_t>(whole(least, most)) << 52);
    }
};
