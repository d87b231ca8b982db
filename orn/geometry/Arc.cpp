#include "orn/geometry/Arc.h"

#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcsImp.h"
#include "orn/geometry/Elementary.h"

#include <cmath>
#include <ostream>
#include <utility>

namespace ORN {

Point<2> Arc<2>::midpoint() const noexcept {
    // The sagitta is bulge / 2 chords, to the right of the chord.
    Vector<2> const d = end_ - start_;
    return start_ + Vector<2>{(d.x() + bulge_ * d.y()) / 2, (d.y() - bulge_ * d.x()) / 2};
}

Point<2> Arc<2>::centre() const noexcept {
    // Half of the chord is seen from the centre under twice the arc tangent of the bulge: −k is the cotangent of that.
    Vector<2> const d = end_ - start_;
    double const k = (bulge_ - 1 / bulge_) / 2;
    return start_ + Vector<2>{(d.x() + d.y() * k) / 2, (d.y() - d.x() * k) / 2};
}

double Arc<2>::radius() const noexcept { return (start_ - centre()).length(); }

double Arc<2>::length() const noexcept { return ORNArcLength(bulge_) * (end_ - start_).length(); }

double Arc<2>::deviation() const noexcept { return std::fabs(bulge_ * (end_ - start_).length() * 0.5); }

Extent<2> Arc<2>::extent() const noexcept {
    Extent<2> box{start_, end_};
    if (bulge_ == 0) return box;
    if (bulge_ * bulge_ < nearlyStraight) return boxOfArc(start_, bulge_, end_, (end_ - start_).perpendicular());

    // The box grows by the extreme between each two quadrants that the arc passes through. With both ends in one quadrant
    // none is passed, even when the arc goes nearly all the way round: extent() promises no more.
    Point<2> const c = centre();
    double const r = radius();
    int from = (start_ - c).quadrant();
    int to = (end_ - c).quadrant();
    if (bulge_ < 0) std::swap(from, to);
    if (to < from) to += 4;
    Vector<2> const extremes[] = {{0, r}, {-r, 0}, {0, -r}, {r, 0}};  // on leaving the quadrants 1 to 4
    for (int quadrant = from; quadrant < to; ++quadrant) box += c + extremes[(quadrant - 1) % 4];
    return box;
}

bool Arc<2>::measureOff(double distance, Point<2>& point, Vector<2>& tangent) const noexcept {
    auto const turned = [](Vector<2> const& v) { return v.perpendicular(); };
    return measureOffArc(*this, turned, distance, point, tangent);
}

std::wostream& operator<<(std::wostream& os, Arc<2> const& arc) {
    return os << arc.start() << L'[' << arc.bulge() << L']' << arc.end();
}

}
