/// Points in bulk: what p * t and p / t give for every point, bit for bit (one NaN is as good as another), with the
/// transform looked at once, or in a slice of space once for every 256 points.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Point.h"
#include "orn/transforms/Transform.h"

#include <span>

/// out[i] = in[i] * t. The two may be the same array. Throws std::logic_error, and writes nothing, when they overlap
/// otherwise or their lengths differ.
/// @{
ORN_API void mapPoints(Transform<2> const& t, std::span<Point<2> const> in, std::span<Point<2>> out);
ORN_API void mapPoints(Transform<3> const& t, std::span<Point<3> const> in, std::span<Point<3>> out);
/// @}

/// out[i] = in[i] / t, on the same terms. The inverse of an affine or perspective transform is computed as often as the
/// transform is looked at.
/// @{
ORN_API void unmapPoints(Transform<2> const& t, std::span<Point<2> const> in, std::span<Point<2>> out);
ORN_API void unmapPoints(Transform<3> const& t, std::span<Point<3> const> in, std::span<Point<3>> out);
/// @}
