/// Reads drawings from CSV files.
#pragma once

#include "drawing/Input.h"
#include "drawing/Reading.h"

namespace drawing {

Drawing readCsv(Input& input, ReadingOptions const& options);  ///< as readDrawing does

}
