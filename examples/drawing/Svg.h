/// Pictures of lines and arcs for other programs.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/Page.h"

#include "orn/text/RawFile.h"

namespace drawing {

/// Lines and arcs as they are, a group with a title for each layer, in the order of the layers.
void writeSvg(Drawing const& drawing, Page const& page, ORN::RawWriter& file);

}
