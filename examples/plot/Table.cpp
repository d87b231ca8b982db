#include "plot/Table.h"

#include "drawing/Program.h"

#include "orn/text/CSVWriter.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"

#include <algorithm>

namespace plot {

namespace {

/// A terminal would obey control characters. A layer's name may hold any.
std::wstring shownOnTerminal(std::wstring const& name) {
    std::wstring shown;
    for (wchar_t const c : name) {
        if (drawing::isControl(c)) {
            shown += stringPrintf(L"\\U+%04X", static_cast<unsigned int>(c));
        } else {
            shown += c;
        }
    }
    return shown;
}

void writeRow(ORN::CSVWriter& rows, std::wstring const& name, drawing::Measurements const& sums) {
    rows.field(name).field(std::to_wstring(sums.entities)).field(std::to_wstring(sums.arcs));
    Point<2> const lo = sums.extent.lo(), hi = sums.extent.hi();
    for (double const value : {sums.length, sums.area, lo.x(), lo.y(), hi.x(), hi.y()}) rows.field(value);
    rows.endRecord();
}

}

std::string table(drawing::Drawing const& drawing, Names names) {
    std::wstring text = L"layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n";
    ORN::CSVWriter rows{text, {}, L"\n"};
    std::wstring whole = L"*";
    for (drawing::Layer const& layer : drawing.layers()) {
        writeRow(rows, names == Names::forTerminal ? shownOnTerminal(layer.name) : layer.name, layer.sums);
    }
    // No layer may have the name of the last row.
    auto const isTaken = [&](drawing::Layer const& layer) { return layer.name == whole; };
    while (std::ranges::any_of(drawing.layers(), isTaken)) whole += L'*';
    writeRow(rows, whole, drawing.total());
    return utf8(text);
}

}
