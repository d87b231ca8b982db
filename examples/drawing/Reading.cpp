#include "drawing/Reading.h"

#include "drawing/Csv.h"
#include "drawing/Input.h"
#include "drawing/Picture.h"
#include "drawing/dxf/Reader.h"

#include "orn/foundation/Error.h"

#include <algorithm>

namespace drawing {

namespace {

/// The first line is the group code 0, or 999 of a comment, or says that the file is binary; no header of a CSV file is
/// that short.
bool beginsAsDxf(std::string_view head) {
    if (head.starts_with("\xEF\xBB\xBF")) head.remove_prefix(3);
    head.remove_prefix(std::min(head.find_first_not_of(" \t\r\n"), head.size()));
    std::string_view const line = head.substr(0, head.find_first_of("\r\n"));
    std::string_view const word = line.substr(0, line.find_last_not_of(" \t") + 1);
    return word == "0" || word == "999" || line.find("Binary DXF") != std::string_view::npos;
}

}

Drawing readDrawing(std::wstring const& file, ReadingOptions const& options) {
    Input input{file};
    bool const isDxf = endsIn(file, L".dxf") || beginsAsDxf(input.head());
    Drawing drawing = isDxf ? dxf::read(input, options) : readCsv(input, options);
    if (drawing.entities().empty()) throw ORN::OrnError{input.name() + L": there is nothing to draw"};
    if (!isMeasurable(drawing.total()))
        throw ORN::OrnError{input.name() + L": the drawing is too large to be measured"};
    return drawing;
}

}
