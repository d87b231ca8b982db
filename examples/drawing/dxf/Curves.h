/// Curves as arcs.
#pragma once

#include "orn/geometry/Arc.h"

#include <functional>
#include <vector>

namespace drawing::dxf {

using TakeArc = std::function<void(ORN::Arc<2> const&)>;

/// centre + u cos w + v sin w, from the angle `start` on: a circle, or an ellipse, as a transform leaves it.
struct Conic {
    Point<2> centre;
    Vector<2> u, v;
    double start, sweep;  ///< in radians; a positive sweep runs from u to v

    Point<2> at(double angle) const noexcept;
    bool isCircular() const noexcept;  ///< u and v are equally long and at right angles, up to rounding
};

/// A circle gives exact arcs of at most half a turn, any other conic arcs that keep within the tolerance of it.
void conicArcs(Conic const& conic, double tolerance, TakeArc const& take);

/// A B-spline with weights.
struct Spline {
    static constexpr int mostDegree = 25;

    int degree = 3;             ///< 1 to mostDegree
    std::vector<double> knots;  ///< not decreasing; as many as points, and degree + 1
    std::vector<Point<2>> points;
    std::vector<double> weights;  ///< greater than 0, as many as points

    /// The parameter lies between the knots number span and span + 1.
    Point<2> at(double parameter, std::size_t span) const;
};

/// Arcs that keep within the tolerance of the spline.
void splineArcs(Spline const& spline, double tolerance, TakeArc const& take);

}
