#include "drawing/dxf/Curves.h"

#include "orn/geometry/Angle.h"
#include "orn/geometry/ArcMaking.h"

#include <algorithm>
#include <cmath>

namespace drawing::dxf {

namespace {

constexpr double turn = 2 * Angle::pi;

/// The angle by which the way from a over p to b turns at p: half of the angle of the arc through the three points.
double turning(Point<2> const& a, Point<2> const& p, Point<2> const& b) {
    Vector<2> const in = p - a, out = b - p;
    return std::atan2(cross(in, out), dot(in, out));
}

double distance(Point<2> const& a, Point<2> const& b) { return std::hypot(b.x() - a.x(), b.y() - a.y()); }

/// Halves the parameters of a curve until arcs through both ends and the middle keep within the tolerance.
template <typename Curve>
class Approximation {
public:
    Approximation(Curve const& curve, double tolerance, TakeArc const& take)
        : curve_{curve}, tolerance_{tolerance}, take_{take} {}

    void piece(double from, Point<2> const& a, double to, Point<2> const& b, int depth = 0) const {
        double const half = from + (to - from) / 2;
        Point<2> const p = curve_(half), q = curve_(from + (to - from) / 4), r = curve_(from + (to - from) * 0.75);
        double const bulge = ORN::arcThrough(a, p, b).bulge();
        // Where the points lie together, no arc goes through them: the bulge would be NaN.
        if (depth == deepest || isPoint(a, {b, p, q, r})) {
            take_({a, b});
        } else if (std::fabs(bulge) <= 1 && keepsTo(a, p, b, q) && keepsTo(a, p, b, r)) {
            take_({a, bulge, b});
        } else {
            piece(from, a, half, p, depth + 1);
            piece(half, p, to, b, depth + 1);
        }
    }

private:
    // The limit ends the halving also where points are not finite: no comparison with NaN holds.
    static constexpr int deepest = 16;

    bool isPoint(Point<2> const& a, std::initializer_list<Point<2>> points) const {
        return std::all_of(points.begin(), points.end(),
                           [&](Point<2> const& p) { return distance(a, p) <= tolerance_; });
    }

    /// A point beside the arc sees the chord under another angle than the arc's points do. Moved off the arc by h it
    /// turns the way by h (1/|a q| + 1/|q b|) at most.
    bool keepsTo(Point<2> const& a, Point<2> const& p, Point<2> const& b, Point<2> const& q) const {
        double const off = std::fabs(turning(a, q, b) - turning(a, p, b));
        double const first = distance(a, q), second = distance(q, b);
        return off * first * second <= tolerance_ * distance(a, b);
    }

    Curve const& curve_;
    double tolerance_;
    TakeArc const& take_;
};

void exactArcs(Conic const& conic, TakeArc const& take) {
    double const sense = cross(conic.u, conic.v) < 0 ? -1 : 1;
    // The small number keeps a whole turn, which rounding may have made larger, from becoming three arcs.
    int const parts = std::max(1, static_cast<int>(std::ceil(std::fabs(conic.sweep) / Angle::pi - 1e-9)));
    double const bulge = ORN::bulgeOf(sense * conic.sweep / parts);
    // The last arc of a whole turn ends where the first begins, bit for bit.
    bool const closed = std::fabs(std::fabs(conic.sweep) - turn) < 1e-12;
    Point<2> const first = conic.at(conic.start);
    Point<2> from = first;
    for (int i = 1; i <= parts; ++i) {
        Point<2> const to = closed && i == parts ? first : conic.at(conic.start + conic.sweep * i / parts);
        take({from, bulge, to});
        from = to;
    }
}

}

Point<2> Conic::at(double angle) const noexcept { return centre + u * std::cos(angle) + v * std::sin(angle); }

bool Conic::isCircular() const noexcept {
    double const uu = u.lengthSquared(), vv = v.lengthSquared(), rounding = 1e-11 * (uu + vv);
    return std::fabs(uu - vv) <= rounding && std::fabs(dot(u, v)) <= rounding;
}

void conicArcs(Conic const& conic, double tolerance, TakeArc const& take) {
    if (conic.isCircular()) return exactArcs(conic, take);
    auto const curve = [&](double angle) { return conic.at(angle); };
    Approximation const approximation{curve, tolerance, take};
    // Eighths of a turn at most: the quarters of a longer piece, where piece() looks, would say less about the rest.
    int const parts = std::max(1, static_cast<int>(std::ceil(std::fabs(conic.sweep) * 8 / turn - 1e-9)));
    bool const closed = std::fabs(std::fabs(conic.sweep) - turn) < 1e-12;
    Point<2> const first = conic.at(conic.start);
    double from = conic.start;
    Point<2> a = first;
    for (int i = 1; i <= parts; ++i) {
        double const to = conic.start + conic.sweep * i / parts;
        Point<2> const b = closed && i == parts ? first : conic.at(to);
        approximation.piece(from, a, to, b);
        from = to;
        a = b;
    }
}

// De Boor's algorithm, on the points times their weights beside the weights.
Point<2> Spline::at(double parameter, std::size_t span) const {
    struct Weighted {
        double x, y, w;
    };
    std::size_t const p = static_cast<std::size_t>(degree);
    Weighted d[mostDegree + 1];
    for (std::size_t i = 0; i <= p; ++i) {
        std::size_t const at = span - p + i;
        d[i] = {points[at].x() * weights[at], points[at].y() * weights[at], weights[at]};
    }
    for (std::size_t level = 1; level <= p; ++level) {
        for (std::size_t i = p; i >= level; --i) {
            double const low = knots[span - p + i], high = knots[span + 1 + i - level];
            double const t = high > low ? (parameter - low) / (high - low) : 0.0;
            d[i] = {d[i - 1].x + (d[i].x - d[i - 1].x) * t, d[i - 1].y + (d[i].y - d[i - 1].y) * t,
                    d[i - 1].w + (d[i].w - d[i - 1].w) * t};
        }
    }
    return {d[p].x / d[p].w, d[p].y / d[p].w};
}

void splineArcs(Spline const& spline, double tolerance, TakeArc const& take) {
    // The curve runs from the knot number `degree` to the one numbered as there are points, where the last span ends.
    std::size_t const first = static_cast<std::size_t>(spline.degree), last = spline.points.size() - 1;
    for (std::size_t span = first; span <= last; ++span) {
        double const from = spline.knots[span], to = spline.knots[span + 1];
        // A knot that stands there several times leaves spans without length.
        if (!(from < to)) continue;
        auto const curve = [&](double parameter) { return spline.at(parameter, span); };
        Approximation const approximation{curve, tolerance, take};
        // A span of degree n has at most n - 2 inflexions; in halves none hides between the points that are looked at.
        int const parts = std::max(2, spline.degree);
        Point<2> a = curve(from);
        for (int i = 1; i <= parts; ++i) {
            double const t0 = from + (to - from) * (i - 1) / parts, t1 = from + (to - from) * i / parts;
            Point<2> const b = curve(t1);
            approximation.piece(t0, a, t1, b);
            a = b;
        }
    }
}

}
