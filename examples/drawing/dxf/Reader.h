/// Reads DXF files.
#pragma once

#include "drawing/Reading.h"

#include "orn/text/RawFile.h"

namespace drawing::dxf {

/// What a file may hold: more is refused, so that no file takes all of the memory or never ends.
struct Limits {
    std::uint64_t pieces = 1 << 24;   ///< lines and arcs of the drawing
    std::uint64_t steps = 1 << 25;    ///< entities and points of splines, with those of each inserted block
    std::uint64_t numbers = 1 << 25;  ///< in the definitions of all blocks, or one entity, which counts as four itself
    std::uint64_t names = 1 << 20;    ///< of layers and blocks
    int depth = 64;                   ///< of blocks in blocks
};

/// Reads an ASCII DXF file of R12 or later. The model is drawn as seen from above: lines, polylines, arcs, circles,
/// ellipses, splines, points, outlines of solids and faces, dimensions, and inserted blocks. Whatever is not a circle or a
/// line in the end becomes arcs within the tolerance. Throws ORN::OrnError "FILE:LINE: what is wrong".
Drawing read(ORN::RawReader& raw, ReadingOptions const& options, Limits const& limits = {});

}
