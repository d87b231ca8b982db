#include "plot/Table.h"

#include "orn/text/CSVWriter.h"
#include "orn/text/Encoding.h"

#include <algorithm>

namespace plot {

namespace {

void writeRow(ORN::CSVWriter& rows, std::wstring const& name, drawing::Measurements const& sums) {
    rows.field(name).field(std::to_wstring(sums.entities)).field(std::to_wstring(sums.arcs));
    Point<2> const lo = sums.extent.lo(), hi = sums.extent.hi();
    for (double const value : {sums.length, sums.area, lo.x(), lo.y(), hi.x(), hi.y()}) rows.field(value);
    rows.endRecord();
}

}

std::string table(drawing::Drawing const& drawing) {
    std::wstring text = L"layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n";
    ORN::CSVWriter rows{text, {}, L"\n"};
    std::wstring whole = L"*";
    for (drawing::Layer const& layer : drawing.layers()) writeRow(rows, layer.name, layer.sums);
    auto const isTaken = [&](drawing::Layer const& layer) { return layer.name == whole; };
    while (std::ranges::any_of(drawing.layers(), isTaken)) whole += L'*';
    writeRow(rows, whole, drawing.total());
    return utf8(text);
}

}
