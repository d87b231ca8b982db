#include "orn/geometry/SpatialArc.h"

#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcsImp.h"
#include "orn/geometry/Elementary.h"

#include <cmath>
#include <ostream>

namespace ORN {

namespace {

// An axis at a right angle to the chord: of (0, z, −y) and (−z, 0, x) the longer one, which loses least.
Vector<3> axisOf(Vector<3> const& d) noexcept {
    double const xx = d.x() * d.x(), yy = d.y() * d.y(), zz = d.z() * d.z();
    if (yy + zz > xx + zz) return Vector<3>{0, d.z(), -d.y()}.unit();
    if (xx + zz > 0) return Vector<3>{-d.z(), 0, d.x()}.unit();
    return {0, 0, 1};
}

}

Arc<3>::Arc(Point<3> const& start, Point<3> const& end) noexcept
    : start_{start}, axis_{axisOf(end - start)}, end_{end} {}

Point<3> Arc<3>::midpoint() const noexcept {
    Point<3> const middle = ::midpoint(start_, end_);
    if (bulge_ == 0) return middle;
    return middle + cross(end_ - start_, axis_) * bulge_ / 2;
}

// The centre lies on the line that halves the chord at a right angle, (1 − b²) / 4b chords away from it: with a quarter of
// the angle being atan b, that is half a chord times the cotangent of 2 atan b. The product is formed from left to right.
Point<3> Arc<3>::centre() const noexcept {
    Vector<3> const d = end_ - start_;
    return start_ + d / 2 + cross(axis_, d) * (1 - bulge_ * bulge_) / (4 * bulge_);
}

double Arc<3>::radius() const noexcept {
    return std::fabs((end_ - start_).length() * (bulge_ * bulge_ + 1) / (4 * bulge_));
}

double Arc<3>::length() const noexcept { return ORNArcLength(bulge_) * (end_ - start_).length(); }

double Arc<3>::deviation() const noexcept { return std::fabs((end_ - start_).length() * 0.5 * bulge_); }

Plane Arc<3>::plane() const noexcept { return {axis_, start_}; }

Extent<3> Arc<3>::extent() const noexcept { return boxOfArc(start_, bulge_, end_, cross(axis_, end_ - start_)); }

void Arc<3>::bisect(Arc& first, Arc& second) const noexcept {
    // tan(x / 2) = tan x / (sqrt(tan² x + 1) + 1), which neither cancels nor needs a series for a small bulge.
    // From 1e9 on the square root is the bulge itself, whose square might overflow.
    double const size = std::fabs(bulge_);
    double const half = bulge_ / ((size > 1e9 ? size : std::sqrt(bulge_ * bulge_ + 1)) + 1);
    Point<3> const middle = midpoint();
    Arc const front{start_, half, axis_, middle};
    second = Arc{middle, half, axis_, end_};
    first = front;
}

bool Arc<3>::measureOff(double distance, Point<3>& point, Vector<3>& tangent) const noexcept {
    auto const turned = [this](Vector<3> const& v) { return cross(axis_, v); };
    return measureOffArc(*this, turned, distance, point, tangent);
}

std::wostream& operator<<(std::wostream& os, Arc<3> const& arc) {
    return os << arc.start() << L'[' << arc.bulge() << L' ' << arc.axis() << L']' << arc.end();
}

}
