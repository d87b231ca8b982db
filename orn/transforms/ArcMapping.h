/// Arcs through transforms. Under a similarity an arc stays one; under any other affine map it becomes an arc of an ellipse.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Arc.h"
#include "orn/geometry/EllipticArc.h"
#include "orn/geometry/SpatialArc.h"
#include "orn/transforms/UniformTransform.h"

namespace ORN {

/// Forwards, and back. A mirror turns the sign of the bulge.
/// @{
ORN_API Arc<2> operator*(Arc<2> const& arc, UniformTransform<2> const& t);
ORN_API Arc<2> operator/(Arc<2> const& arc, UniformTransform<2> const& t);
ORN_API Arc<3> operator*(Arc<3> const& arc, UniformTransform<3> const& t);
ORN_API Arc<3> operator/(Arc<3> const& arc, UniformTransform<3> const& t);
/// @}

/// Forwards through any affine map, from the image of the arc's start to that of its end. A straight segment has no centre
/// and gives what is not finite: map its ends. The nearer an arc is to a straight one, the farther its centre, whose
/// rounding moves all points.
/// @{
ORN_API EllipticArc ellipticArc(Arc<2> const& arc, AffineTransform<2> const& t);
ORN_API EllipticArc operator*(EllipticArc const& arc, AffineTransform<2> const& t);
/// @}

}
