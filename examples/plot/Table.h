/// The table of measurements.
#pragma once

#include "drawing/Drawing.h"

#include <string>

namespace plot {

/// CSV in UTF-8 with LF line ends: a header, a row for every layer, and a last row for the whole drawing. The last row is
/// called *, with as many stars as it takes to differ from all layers. Each number is the shortest text from which the
/// same double is read back; its last digit may differ between systems, because their mathematics differ there.
///
/// CSVReader reads back the names of the layers as they are. On a terminal they stand for the eye: a control character,
/// which the terminal would obey, becomes \U+ and four hexadecimal digits, as in a DXF file.
enum class Names { asTheyAre, forTerminal };
std::string table(drawing::Drawing const& drawing, Names names = Names::asTheyAre);

}
