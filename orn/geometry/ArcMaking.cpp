#include "orn/geometry/ArcMaking.h"

#include "orn/geometry/ArcsImp.h"
#include "orn/geometry/Elementary.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ORN {

namespace {

Vector<2> unitOf(Vector<2> const& v) noexcept { return v / hypotenuse(v.x(), v.y()); }

}

double bulgeOf(double sweep) noexcept { return tangent(sweep / 4); }

Arc<2> arcAbout(Point<2> const& centre, double radius, Angle const& from, Angle const& to) noexcept {
    double const turn = (to - from).radians();
    // Nearly a whole turn is a small turn back: the bulge of what is left of the circle is the reciprocal.
    double const bulge = turn < 0 ? -1 / bulgeOf(turn) : bulgeOf(turn);
    return {centre + Vector<2>{radius, from}, bulge, centre + Vector<2>{radius, to}};
}

Arc<2> arcAbout(Point<2> const& centre, double radius, Angle const& from, double sweep) noexcept {
    Angle const to = from + Angle::radians(sweep);
    return {centre + Vector<2>{radius, from}, bulgeOf(sweep), centre + Vector<2>{radius, to}};
}

std::array<Arc<2>, 2> circleAbout(Point<2> const& centre, double radius) noexcept {
    Point<2> const right = centre + Vector<2>{radius, 0}, left = centre - Vector<2>{radius, 0};
    return {Arc<2>{right, 1, left}, Arc<2>{left, 1, right}};
}

// The directions from the start to the point and on to the end differ by half of the angle that the arc turns through;
// the bulge is the tangent of half of that.
Arc<2> arcThrough(Point<2> const& start, Point<2> const& on, Point<2> const& end) noexcept {
    Vector<2> const first = unitOf(on - start), second = unitOf(end - on);
    double const sine = cross(first, second), cosine = dot(first, second);
    return {start, cosine > 0 ? sine / (1 + cosine) : (1 - cosine) / sine, end};
}

Extent<2> trueExtent(Arc<2> const& arc) noexcept {
    return boxOfArc(arc.start(), arc.bulge(), arc.end(), (arc.end() - arc.start()).perpendicular());
}

// A piece of the angle w on a circle of radius r departs from its chord by r (1 − cos(w / 2)), less than r w² / 8.
int piecesWithin(Arc<2> const& arc, double tolerance) {
    if (!(tolerance > 0)) throw std::logic_error{"flattening an arc: the tolerance is not positive"};
    double const angle = 4 * arcTangent(std::fabs(arc.bulge()));
    double const pieces = std::ceil(std::sqrt(arc.length() * angle / (8 * tolerance)));
    return pieces > 1 ? static_cast<int>(std::min(pieces, 65536.0)) : 1;
}

// With a = atan(bulge) and half of the angle that is turned through by then being h, the way from the start is the chord
// turned by h − 2a, and sin h / sin 2a times as long.
void flatten(Arc<2> const& arc, std::span<Point<2>> points) noexcept {
    if (points.empty()) return;
    Vector<2> const chord = arc.end() - arc.start(), turned = chord.perpendicular();
    double const whole = 2 * arcTangent(arc.bulge()), last = static_cast<double>(points.size() - 1);
    bool const straight = std::fabs(arc.bulge()) < 1e-16;  // the sagitta is less than the rounding of the chord
    bool const over = std::fabs(arc.bulge()) > 1;  // then by the other arc of the circle, lest a square overflow
    double const b = over ? 1 / arc.bulge() : arc.bulge();
    double const sineWhole = 2 * b / (b * b + 1), cosineWhole = (over ? -1 : 1) * (1 - b * b) / (b * b + 1);
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        double const part = static_cast<double>(i) / last, h = whole * part;
        auto const [sine, cosine] = sineAndCosine(h);
        double const reach = straight ? part : sine / sineWhole;
        points[i] = arc.start() + chord * ((cosine * cosineWhole + sine * sineWhole) * reach) +
                    turned * ((sine * cosineWhole - cosine * sineWhole) * reach);
    }
    points.front() = arc.start();
    points.back() = arc.end();
}

}
