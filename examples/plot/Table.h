/// The table of measurements.
#pragma once

#include "drawing/Drawing.h"

#include <string>

namespace plot {

/// CSV in UTF-8 with LF line ends: a header, a row for every layer, and a last row for the whole drawing. The last row is
/// called *, with as many stars as it takes to differ from all layers. Each number is the shortest text from which the
/// same double is read back; its last digit may differ between systems, because their mathematics differ there.
std::string table(drawing::Drawing const& drawing);

}
