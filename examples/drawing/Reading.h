/// Reads drawings.
#pragma once

#include "drawing/Drawing.h"

#include <cstdint>
#include <functional>
#include <string>

namespace drawing {

/// Reads a CSV file in any encoding that TextReader knows. The header names the columns, in any order: x1, y1, x2, y2;
/// and if wanted bulge (else 0), layer (else "0") and colour (#RRGGBB, else black); further columns are ignored, and an
/// empty cell counts as a column that is not there. Lines without any of the columns are skipped.
///
/// Throws ORN::OrnError with one line of text that names the file and, where there is one, the line and the column.
/// Calls progress with the number of rows now and then.
Drawing readDrawing(std::wstring const& file, std::function<void(std::uint64_t rows)> const& progress = {});

}
