/// Arcs on the page as polylines.
#pragma once

#include "orn/geometry/Arc.h"
#include "orn/geometry/Extent.h"
#include "orn/transforms/AffineTransform.h"

#include <vector>

namespace drawing {

/// The greatest factor by which a transform stretches a length.
double largestStretch(AffineTransform<2> const& transform);

struct Disc {
    Point<2> centre;
    double radius;
};

/// A disc around the middle of an arc's chord that holds the whole arc.
Disc discAround(ORN::Arc<2> const& arc);

/// Replaces points by those of a polyline that keeps within tolerance of the mapped arc; its ends are the arc's mapped
/// ends, bit for bit. stretch is largestStretch(transform).
void flatten(ORN::Arc<2> const& arc, AffineTransform<2> const& transform, double stretch, double tolerance,
             std::vector<Point<2>>& points);

/// The smallest box around a mapped arc.
Extent<2> mappedExtent(ORN::Arc<2> const& arc, AffineTransform<2> const& transform);

}
