/// Reads drawings.
#pragma once

#include "drawing/Drawing.h"

#include <cstdint>
#include <functional>
#include <string>

namespace drawing {

/// How to read.
struct ReadingOptions {
    std::function<void(std::uint64_t entities)> progress{};  ///< called every few thousand entities
    std::function<void(std::wstring const& what)> remark{};  ///< called with what a user should know about the file
    std::uint32_t ink = 0;                                   ///< the colour of entities without a colour, 0xRRGGBB
    double tolerance = 0;  ///< how far arcs may lie off a curve that they stand for; 0: a millionth of the curve's size
};

/// Reads a DXF file (its name ends in .dxf, or it begins as one) or a CSV file. The name "-" is standard input.
///
/// A CSV file may have any encoding that TextReader knows. The header names the columns, in any order: x1, y1, x2, y2;
/// and if wanted bulge (else 0), layer (else "0") and colour (#RRGGBB, else the ink); further columns are ignored, and an
/// empty cell counts as a column that is not there. Lines without any of the columns are skipped.
///
/// Throws ORN::OrnError with one line of text that names the file and, where there is one, the line and the column.
Drawing readDrawing(std::wstring const& file, ReadingOptions const& options = {});

}
