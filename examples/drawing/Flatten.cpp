#include "drawing/Flatten.h"

#include "orn/geometry/ArcFunctions.h"
#include "orn/geometry/ArcMaking.h"
#include "orn/transforms/PointMapping.h"

#include <algorithm>
#include <cmath>

namespace drawing {

namespace {

/// The point of an arc at a parameter of ORNArcSplit: -1 the start, 0 the middle, 1 the end, by the angle.
class ArcPoints {
public:
    explicit ArcPoints(ORN::Arc<2> const& arc)
        : bulge_{arc.bulge()},
          along_{arc.end() - arc.start()},
          aside_{along_.y(), -along_.x()},
          middle_{arc.start() + along_ * 0.5} {}

    Vector<2> const& along() const noexcept { return along_; }
    Vector<2> const& aside() const noexcept { return aside_; }

    Point<2> at(double t) const {
        double first, height, along, tangentY, tangentX, second;
        ORNArcSplit(t, bulge_, &first, &height, &along, &tangentY, &tangentX, &second);
        return middle_ + along_ * along + aside_ * height;
    }

private:
    double bulge_;
    Vector<2> along_;
    Vector<2> aside_;
    Point<2> middle_;
};

}

double largestStretch(AffineTransform<2> const& transform) {
    // The larger singular value of the matrix.
    Vector<2> const x = Vector<2>{1, 0} * transform, y = Vector<2>{0, 1} * transform;
    double const xx = x.x() * x.x() + x.y() * x.y(), yy = y.x() * y.x() + y.y() * y.y();
    double const xy = x.x() * y.x() + x.y() * y.y();
    return std::sqrt((xx + yy + std::hypot(xx - yy, 2 * xy)) / 2);
}

Disc discAround(ORN::Arc<2> const& arc) {
    // The farthest points are the ends of the chord, or the point half-way along an arc of more than a semicircle.
    Vector<2> const half = (arc.end() - arc.start()) * 0.5;
    return {arc.start() + half, half.length() * std::max(1.0, std::fabs(arc.bulge()))};
}

void flatten(ORN::Arc<2> const& arc, AffineTransform<2> const& transform, double stretch, double tolerance,
             std::vector<Point<2>>& points) {
    // What departs from the arc by no more than this departs by no more than the tolerance when it is mapped.
    ORN::flatten(arc, tolerance / stretch, points);
    mapPoints(transform, points, points);
}

Extent<2> mappedExtent(ORN::Arc<2> const& arc, AffineTransform<2> const& transform) {
    Extent<2> extent{arc.start() * transform, arc.end() * transform};
    if (arc.bulge() == 0) return extent;

    // On the page the point at the angle w from the arc's middle is a constant + r (sin w · along + cos w · aside), for
    // each coordinate a wave with its extremes half a turn apart.
    ArcPoints const points{arc};
    Vector<2> const along = points.along() * transform, aside = points.aside() * transform;
    double const halfAngle = 2 * std::atan(arc.bulge());
    for (double const extreme : {std::atan2(along.x(), aside.x()), std::atan2(along.y(), aside.y())}) {
        for (double const angle : {extreme, extreme - std::copysign(Angle::pi, extreme)}) {
            if (std::fabs(angle) <= std::fabs(halfAngle)) extent += points.at(angle / halfAngle) * transform;
        }
    }
    return extent;
}

}
