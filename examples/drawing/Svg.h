/// SVG files.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/Page.h"

#include "orn/text/RawFile.h"

namespace drawing {

/// Writes the page as an SVG file. Arcs stay arcs. Each layer is a group with a title, in the order of the layers.
void writeSvg(Drawing const& drawing, Page const& page, ORN::RawWriter& file);

}
