// What arcs of the plane and of space compute alike, from the chord and the chord turned a quarter turn about the axis.
#pragma once

#include "orn/geometry/Elementary.h"
#include "orn/geometry/Extent.h"
#include "orn/geometry/Point.h"

#include <cmath>
#include <initializer_list>

namespace ORN {

/// Below this square of the bulge the centre is more than 25 chords away, and what is computed through it shows its
/// rounding.
constexpr double nearlyStraight = 1e-4;

/// The point and the unit tangent at a distance along a nearly straight arc. With a = atan(bulge), half of the angle that
/// is turned through by then being h, the way from the start is the chord turned by h − 2a and sin h / sin 2a long.
template <int N>
void measureOffNearlyStraight(Point<N> const& start, Vector<N> const& chord, Vector<N> const& turnedChord, double bulge,
                              double distance, double fraction, Point<N>& point, Vector<N>& tangent) noexcept {
    double const length = chord.length();
    double const whole = 2 * arcTangent(bulge);
    double const h = whole * fraction;
    double const reach = distance / length * (h == 0 ? 1 : sineAndCosine(h).sine / h);
    auto const way = sineAndCosine(h - whole), travel = sineAndCosine(2 * h - whole);
    point = start + (chord * way.cosine + turnedChord * way.sine) * reach;
    tangent = (chord * travel.cosine + turnedChord * travel.sine) / length;
}

/// The point and the unit tangent at a distance along any arc; true within its ends. turned(v) is v turned a quarter turn
/// anticlockwise about the arc's axis. A straight segment is measured along its chord, a nearly straight one without its
/// centre, and any other by turning the arm from the centre to the start.
template <class Arc, int N, class Turned>
bool measureOffArc(Arc const& arc, Turned turned, double distance, Point<N>& point, Vector<N>& tangent) noexcept {
    double const fraction = distance / arc.length(), bulge = arc.bulge();
    Vector<N> const d = arc.end() - arc.start();
    if (bulge == 0) {
        point = arc.start() + d * fraction;
        tangent = d / d.length();
    } else if (bulge * bulge < nearlyStraight) {
        measureOffNearlyStraight(arc.start(), d, turned(d), bulge, distance, fraction, point, tangent);
    } else {
        Point<N> const c = arc.centre();
        Vector<N> const arm = arc.start() - c;
        double const r = bulge > 0 ? arm.length() : -arm.length();
        auto const [sine, cosine] = sineAndCosine(distance / r);
        Vector<N> const there = arm * cosine + turned(arm) * sine;
        point = c + there;
        tangent = turned(there) / r;
    }
    return 0 <= fraction && fraction <= 1;
}

/// The smallest box. At the angle psi from the arc's midpoint, with d the chord, e the chord turned clockwise and
/// R = (b² + 1) / (4b), an axis' coordinate is that of the chord's middle plus R·(d sin psi + e (cos psi − cos alpha)),
/// and the ends are at ±alpha, tan(alpha / 2) being b. Its extremes are at (sin psi, cos psi) = ±(d, e) / h with
/// h = |(d, e)|, where t = tan(psi / 2) is d / (h ± e). They count when |t| < |b|. The terms are written so that nearly
/// straight arcs lose nothing, nothing overflows early and nothing is divided by zero.
template <int N>
Extent<N> boxOfArc(Point<N> const& start, double bulge, Point<N> const& end, Vector<N> const& turnedChord) noexcept {
    Extent<N> const ends{start, end};
    if (bulge == 0) return ends;
    Vector<N> const chord = end - start;
    Point<N> const middle = ::midpoint(start, end);
    double rows[2][N];
    ends.packToPod(rows);
    for (int i = 0; i < N; ++i) {
        double const d = chord[i], rise = -turnedChord[i];
        double const h = hypotenuse(d, rise);
        for (double const side : {1.0, -1.0}) {
            double const e = side * rise;
            if (d == 0 && e <= 0) continue;  // level with the arc's axis, or opposite to its midpoint
            double const t = e > 0 ? d / (h + e) : (h - e) / d;
            if (!(std::fabs(t) < std::fabs(bulge))) continue;
            double const extreme = middle[i] + (side * d / 4 * (t / bulge + t * bulge) + rise * bulge / 2);
            if (rows[0][i] > extreme) rows[0][i] = extreme;
            if (extreme > rows[1][i]) rows[1][i] = extreme;
        }
    }
    return Extent<N>{rows};
}

}
