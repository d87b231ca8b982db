/// Points in bulk: what p * t and p / t give for every point, bit for bit, with the transform looked at once.
#pragma once

#include "orn/Export.h"
#include "orn/geometry/Point.h"
#include "orn/transforms/Transform.h"

#include <span>

/// out[i] = in[i] * t. The two may be the same array; otherwise they must not overlap. Throws std::logic_error, and
/// writes nothing, when their lengths differ.
/// @{
ORN_API void mapPoints(Transform<2> const& t, std::span<Point<2> const> in, std::span<Point<2>> out);
ORN_API void mapPoints(Transform<3> const& t, std::span<Point<3> const> in, std::span<Point<3>> out);
/// @}

/// out[i] = in[i] / t, on the same terms. The inverse of an affine or perspective transform is computed once.
/// @{
ORN_API void unmapPoints(Transform<2> const& t, std::span<Point<2> const> in, std::span<Point<2>> out);
ORN_API void unmapPoints(Transform<3> const& t, std::span<Point<3> const> in, std::span<Point<3>> out);
/// @}
