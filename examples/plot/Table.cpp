#include "plot/Table.h"

#include "orn/text/Encoding.h"
#include "orn/text/Numbers.h"

namespace plot {

namespace {

std::string numberText(double value) {
    char room[ORN::doubleRoom];
    return std::string{ORN::writeDouble(room, value)};
}

std::string fieldText(std::wstring const& field) {
    std::string text = utf8(field);
    bool const blankEnds = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    if (!blankEnds && text.find_first_of(",\"\r\n\t\f\v") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char const c : text) quoted += c == '"' ? std::string{"\"\""} : std::string{c};
    return quoted + '"';
}

void appendRow(std::string& table, std::wstring const& name, drawing::Measurements const& sums) {
    table += fieldText(name) + ',' + std::to_string(sums.entities) + ',' + std::to_string(sums.arcs);
    Point<2> const lo = sums.extent.lo(), hi = sums.extent.hi();
    for (double const value : {sums.length, sums.area, lo.x(), lo.y(), hi.x(), hi.y()})
        table += ',' + numberText(value);
    table += '\n';
}

}

std::string table(drawing::Drawing const& drawing) {
    std::string text = "layer,entities,arcs,length,area,xmin,ymin,xmax,ymax\n";
    for (drawing::Layer const& layer : drawing.layers()) appendRow(text, layer.name, layer.sums);
    appendRow(text, L"*", drawing.total());
    return text;
}

}
