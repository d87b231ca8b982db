/// The mathematics of circular arcs that depends on the bulge alone, in units of the chord length, with C linkage.
///
/// The bulge is the tangent of a quarter of the included angle: 0 for a straight segment, ±1 for a semicircle, more for
/// more. It is positive when the arc runs anticlockwise from its start to its end. Any thread may call; NaN gives NaN.
/// Errors are promised while the processor rounds to nearest.
/// The header is one of C, too.
#pragma once

#include "orn/Export.h"

#ifdef __cplusplus
/// Nothing is thrown, where the language has a word for it.
#define ORN_NOEXCEPT noexcept
extern "C" {
#else
#define ORN_NOEXCEPT
#endif

/// Arc length over chord length. Relative error at most 4 units in the last place up to a bulge of 1e154. The squares of
/// larger ones overflow: this function and the next two give infinities from 1.35e154 on, and from 4e307 on also NaN.
ORN_API double ORNArcLength(double bulge) ORN_NOEXCEPT;

/// Area between arc and chord over the chord's square, signed as the bulge. Relative error at most 32 epsilon (7e-15) up
/// to a bulge of 1e154.
ORN_API double ORNArcSegmentArea(double bulge) ORN_NOEXCEPT;

/// Distance of that segment's centre of gravity from the chord over the chord length, signed as the bulge. Relative
/// error at most 128 epsilon (3e-14) up to a bulge of 1e154.
ORN_API double ORNArcSegmentCoG(double bulge) ORN_NOEXCEPT;

/// Splits an arc at the parameter t, proportional to arc length: −1 is the start, 0 the midpoint, 1 the end. All six
/// outputs are written; first and second are the parts' bulges. The frame is the chord's: it runs along x from −0.5 to
/// 0.5, (along, height) is the point of the split, and heights are positive on the side to which a positive bulge bulges.
ORN_API void ORNArcSplit(double t, double bulge, double* first, double* height, double* along, double* tangentY,
                         double* tangentX, double* second) ORN_NOEXCEPT;

#ifdef __cplusplus
}
#endif
#undef ORN_NOEXCEPT
