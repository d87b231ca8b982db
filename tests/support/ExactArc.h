/// Arcs with more digits than a double has, for expected values: by their length and curvature from the start.
#pragma once

#include "orn/geometry/SpatialArc.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

class ExactArc {
public:
    using Number = long double;
    using Triple = std::array<Number, 3>;

    explicit ExactArc(ORN::Arc<3> const& arc)
        : start_{wide(arc.start())}, end_{wide(arc.end())}, axis_{wide(arc.axis())} {
        Number const b = arc.bulge(), a = std::atan(b);
        Triple const chord = sum(end_, 1, start_, -1, start_, 0);
        Number const c = std::sqrt(chord[0] * chord[0] + chord[1] * chord[1] + chord[2] * chord[2]);
        turn_ = 4 * a;
        length_ = b == 0 ? c : c * (a / b) * (1 + b * b);
        along_ = sum(chord, std::cos(2 * a) / c, cross(axis_, chord), -std::sin(2 * a) / c, chord, 0);
    }
    explicit ExactArc(ORN::Arc<2> const& arc)
        : ExactArc{ORN::Arc<3>{inSpace(arc.start()), arc.bulge(), Vector<3>{0, 0, 1}, inSpace(arc.end())}} {}

    static Point<3> inSpace(Point<2> const& p) { return {p.x(), p.y(), 0}; }

    Number length() const { return length_; }

    /// The greatest size of a coordinate, and the length: what rounding is relative to.
    double size() const {
        Number most = 0;
        for (int i = 0; i < 3; ++i) most = std::max({most, std::fabs(start_[i]), std::fabs(end_[i])});
        return static_cast<double>(most + length_);
    }

    /// At a part of the length.
    /// @{
    Triple point(Number part) const {
        Number const w = turn_ * part, half = std::sin(w / 2);
        Number const reach = w == 0 ? part * length_ : length_ / turn_ * std::sin(w);
        Number const aside = w == 0 ? 0 : length_ / turn_ * 2 * half * half;
        return sum(start_, 1, along_, reach, cross(axis_, along_), aside);
    }
    template <int N>
    Point<N> rounded(Number part) const {
        double c[N];
        for (int i = 0; i < N; ++i) c[i] = static_cast<double>(point(part)[i]);
        return Point<N>{c};
    }
    Triple tangent(Number part) const {
        return sum(along_, std::cos(turn_ * part), cross(axis_, along_), std::sin(turn_ * part), along_, 0);
    }
    /// @}

    /// The bounds on an axis: those of the ends and of where the tangent is at a right angle to the axis.
    std::array<Number, 2> bounds(int i) const {
        Number lo = std::min(start_[i], end_[i]), hi = std::max(start_[i], end_[i]);
        Number const level = std::atan2(along_[i], -cross(axis_, along_)[i]), pi = std::acos(Number{-1});
        for (int k = -4; k <= 4 && turn_ != 0; ++k) {
            Number const part = (level + k * pi) / turn_;
            if (part < 0 || part > 1) continue;
            lo = std::min(lo, point(part)[i]);
            hi = std::max(hi, point(part)[i]);
        }
        return {lo, hi};
    }

    template <int N>
    static double distance(Point<N> const& p, Triple const& exact) {
        Number squares = 0;
        for (int i = 0; i < N; ++i) squares += (p[i] - exact[i]) * (p[i] - exact[i]);
        return static_cast<double>(std::sqrt(squares));
    }

private:
    template <class T>
    static Triple wide(T const& t) {
        return {t.x(), t.y(), t.z()};
    }
    static Triple sum(Triple const& a, Number x, Triple const& b, Number y, Triple const& c, Number z) {
        return {a[0] * x + b[0] * y + c[0] * z, a[1] * x + b[1] * y + c[1] * z, a[2] * x + b[2] * y + c[2] * z};
    }
    static Triple cross(Triple const& a, Triple const& b) {
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }

    Triple start_, end_, axis_, along_;
    Number turn_, length_;
};

/// Measures an arc off within its ends and beyond, and holds points and tangents to 1e-14 of the arc's size.
template <int N>
void expectMeasured(ORN::Arc<N> const& arc) {
    ExactArc const exact{arc};
    EXPECT_LE(ExactArc::distance(arc.midpoint(), exact.point(0.5)), 1e-14 * exact.size()) << arc.bulge();
    for (double const part : {-0.5, 0.0, 1e-9, 0.3, 0.5, 1.0, 1.5}) {
        Point<N> point;
        Vector<N> tangent;
        EXPECT_EQ(arc.measureOff(part * arc.length(), point, tangent), 0 <= part && part <= 1) << part;
        EXPECT_LE(ExactArc::distance(point, exact.point(part)), 1e-14 * exact.size()) << part << ' ' << arc.bulge();
        EXPECT_LE(ExactArc::distance(Point<N>{} + tangent, exact.tangent(part)), 1e-14) << part << ' ' << arc.bulge();
    }
}

/// Holds the box of an arc to 1e-14 of the arc's size.
template <int N>
void expectBoxed(ORN::Arc<N> const& arc, Extent<N> const& box) {
    ExactArc const exact{arc};
    for (int i = 0; i < N; ++i) {
        auto const [lo, hi] = exact.bounds(i);
        EXPECT_NEAR(box.lo(i), static_cast<double>(lo), 1e-14 * exact.size()) << i << " of bulge " << arc.bulge();
        EXPECT_NEAR(box.hi(i), static_cast<double>(hi), 1e-14 * exact.size()) << i << " of bulge " << arc.bulge();
    }
}

/// An arc of this bulge. Every other chord is nearly along an axis.
template <int N>
ORN::Arc<N> someArc(RandomGeometry& random, double bulge) {
    Point<N> const start = random.point<N>();
    double along[] = {random.number(1, 10), random.magnitude(-18, -2), 0};
    if (random.whole(0, 1) == 0) std::swap(along[0], along[1]);
    Vector<N> const chord = random.whole(0, 1) == 0 ? random.vector<N>() : Vector<N>{along};
    if constexpr (N == 2)
        return {start, bulge, start + chord};
    else
        return {start, bulge, cross(chord, random.vector<3>()), start + chord};
}

/// Of either sign, on a logarithmic grid down to the least, and none at all.
template <typename Body>
void forEveryBulge(double most, Body body) {
    for (double bulge = most; bulge > 1e-320; bulge *= bulge > 1e-20 ? 0.3 : 1e-10) body(bulge), body(-bulge);
    body(0.0);
}
