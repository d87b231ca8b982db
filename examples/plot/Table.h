/// The table of measurements.
#pragma once

#include "drawing/Drawing.h"

#include <string>

namespace plot {

/// CSV in UTF-8 with LF line ends: a header, a row for every layer, and a row * for the whole drawing. Numbers have 17
/// significant digits, enough to read back the same double; the last of them may differ between systems
/// as their mathematics do.
std::string table(drawing::Drawing const& drawing);

}
