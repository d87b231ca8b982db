#include "plot/Options.h"

#include "drawing/CommandLine.h"

#include "orn/foundation/Error.h"
#include "orn/text/CSVReader.h"

namespace plot {

namespace {

constexpr char const* above =
    "The drawing is a DXF file (ASCII, R12 or later) or a CSV file; the picture's name ends in .png, .bmp, .svg or "
    ".pdf.\n"
    "A drawing - is standard input. A picture - is standard output; then no table is printed.\n";

constexpr char const* below =
    "Columns of a CSV file: x1, y1, x2, y2; optional: bulge (tangent of a quarter of the arc's angle, positive\n"
    "anticlockwise), layer, colour (#RRGGBB).\n"
    "\n"
    "Columns of the table, which is a CSV file itself, with a row for each layer and a last one for the whole,\n"
    "called * (** if a layer has that name):\n"
    "  layer                   its name; on a terminal a control character is shown as \\U+XXXX, as DXF files write "
    "it\n"
    "  entities, arcs          number of lines and arcs, and how many of them are arcs; a circle counts as two arcs\n"
    "  length                  sum of their lengths\n"
    "  area                    sum of the areas between arcs and their chords, those of clockwise arcs negative;\n"
    "                          not the area that an outline encloses\n"
    "  xmin, ymin, xmax, ymax  the smallest box around what is drawn\n"
    "\n"
    "A DXF file's model is drawn as seen from above. Standard error says how many texts, hatches and other entities "
    "are\n"
    "not drawn. The status is 0, 1 when something fails, and 2 when the command line is wrong.\n";

void setScale(drawing::CommandLine const& line, drawing::View& view, std::wstring const& text) {
    std::size_t const comma = text.find(L',');
    if (comma == std::wstring::npos) line.fail(L"--scale: '" + text + L"' is not a pair of factors like 1,0.5");
    view.scaleX = line.number(L"--scale", text.substr(0, comma));
    view.scaleY = line.number(L"--scale", text.substr(comma + 1));
    if (view.scaleX == 0 || view.scaleY == 0) line.fail(L"--scale: a factor of 0 leaves nothing to draw");
}

/// A list of names is a record of CSV: a name with a comma stands in quotes.
std::set<std::wstring> names(drawing::CommandLine const& line, std::wstring const& text) {
    std::vector<std::wstring> names, more;
    try {
        ORN::CSVReader list{text};
        // A second record would be a line break in the list.
        if (list.read(names) && !list.read(more)) return {names.begin(), names.end()};
    } catch (ORN::OrnError const&) {  // a quote is not closed
    }
    line.fail(L"--layers: '" + text + L"' is not a list of names like walls,\"doors, windows\"");
}

drawing::Format format(drawing::CommandLine const& line, std::wstring const& ending) {
    // formatOf reads the ending of a name, and wants something before it.
    std::optional<drawing::Format> const format = drawing::formatOf(L"picture." + ending);
    if (!format) line.fail(L"--format: '" + ending + L"' is not png, bmp, svg or pdf");
    return *format;
}

}

Options parseOptions(std::vector<std::wstring> const& arguments) {
    Options options;
    std::optional<drawing::Format> asked;
    std::optional<std::wstring> table;
    drawing::View& view = options.view;
    std::optional<drawing::CommandLine> line;  // made below, because the options' functions refer to it
    line.emplace(
        "orn-plot",
        drawing::CommandLine::Texts{
            "DRAWING PICTURE",
            "draws the lines and arcs of a drawing into a picture and prints a table of their measurements", above,
            below},
        std::vector<drawing::Option>{
            {"size", "WxH", "size of the picture in pixels (1200x900)", [&](auto& v) { options.size = line->size(v); }},
            {"scale", "SX,SY", "scale the drawing along its axes", [&](auto& v) { setScale(*line, view, v); }},
            {"mirror", nullptr, "mirror it left to right", [&](auto&) { view.mirrored = true; }},
            {"rotate", "DEGREES", "rotate it anticlockwise",
             [&](auto& v) { view.degrees = line->number(L"--rotate", v); }},
            {"background", "COLOUR",
             "colour of the paper: #RRGGBB, black or white (white); on dark paper black ink becomes white",
             [&](auto& v) { view.paper = line->colour(v); }},
            {"layers", "A,B,...",
             "draw and measure only these layers (all that the drawing itself does not hide); a name with a\n"
             "comma stands in quotes",
             [&](auto& v) { options.layers = names(*line, v); }},
            {"table", "FILE", "write the table into a file", [&](auto& v) { table = v; }},
            {"quiet", nullptr, "print no table on standard output and no remarks on standard error",
             [&](auto&) { options.quiet = true; }},
            {"format", "FORMAT", "kind of the picture, whatever its name is: png, bmp, svg or pdf (png for -)",
             [&](auto& v) { asked = format(*line, v); }},
            {"tolerance", "T",
             "replace splines, ellipses and unequally scaled arcs by arcs that are at most T away, in the\n"
             "drawing's units (a millionth of the size of each)",
             [&](auto& v) {
                 options.tolerance = line->number(L"--tolerance", v);
                 // 0 means the default inside the program, so the user must not give it.
                 if (!(options.tolerance > 0)) line->fail(L"--tolerance: a tolerance is greater than 0");
             }},
        });
    std::vector<std::wstring> const given = line->parse(arguments);
    options.answer = line->answer();
    if (!options.answer.empty()) return options;

    if (given.size() < 2)
        line->fail(given.empty() ? L"a drawing and a picture must be named" : L"a picture must be named");
    if (given.size() > 2) line->fail(L"'" + given[2] + L"' is one name too many");
    options.drawing = given[0];
    options.picture = given[1];
    if (!asked && options.picture != L"-") asked = drawing::formatOf(options.picture);
    if (!asked && options.picture != L"-") {
        line->fail(options.picture + L": the name of a picture ends in .png, .bmp, .svg or .pdf");
    }
    // Only standard output has no name that tells the format.
    options.format = asked.value_or(drawing::Format::png);
    // A picture on standard output leaves no place for the table there, unless the user gives the table a file.
    options.table = table.value_or(options.quiet || options.picture == L"-" ? L"" : L"-");
    if (options.table == L"-" && options.picture == L"-") line->fail(L"the picture and the table cannot both go to -");
    return options;
}

}
