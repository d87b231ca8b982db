#include "view/Options.h"

#include "drawing/CommandLine.h"

#include <optional>

namespace view {

namespace {

constexpr char const* above =
    "Each drawing (a DXF or CSV file, or - for standard input) has a window of its own. They are drawn in the "
    "background,\n"
    "the window in front first.\n"
    "\n"
    "  wheel, + and -         larger and smaller, about the pointer or the middle\n"
    "  drag, arrow keys       move the drawing\n"
    "  f, Home                fit the drawing into the window\n"
    "  1 to 9, 0              show or hide the layer of that number (0 for 10), in all windows; a: show all\n"
    "  F5                     draw anew\n"
    "  o                      open more drawings, which may be dropped onto a window, too (on Windows only)\n"
    "  q, Esc                 close the window\n";

constexpr char const* below =
    "Lines of a script:\n"
    "  wait                  until all is drawn\n"
    "  activate N            the Nth drawing's window\n"
    "  resize N WxH          so that its picture has this size\n"
    "  move N X,Y            so that its picture has this corner on the screen\n"
    "  minimise N, restore N, close N\n"
    "  redraw N              from the first row\n"
    "  zoom N FACTOR X,Y     larger by a factor, about a place on the picture\n"
    "  pan N X,Y, fit N      by pixels; into the window again\n"
    "  hold N ROWS           its drawing is to stand still where it has so many rows\n"
    "  held N                until it stands still\n"
    "  release N             it goes on\n"
    "  hide LAYER, show LAYER\n"
    "  save N PICTURE        the whole picture (.png or .bmp)\n"
    "  await FILE            until there is such a file\n"
    "  note TEXT             a line in the record\n"
    "  quit\n";

}

Options parseOptions(std::vector<std::wstring> const& arguments) {
    Options options;
    // It is made below, because the options' functions refer to it.
    std::optional<drawing::CommandLine> line;
    line.emplace("orn-view", drawing::CommandLine::Texts{"DRAWING...", "shows drawings in windows", above, below},
                 std::vector<drawing::Option>{
                     {"size", "WxH", "size of each picture in pixels, at first (480x360)",
                      [&](auto& v) { options.size = line->size(v); }},
                     {"script", "FILE", "do what the lines of a file say", [&](auto& v) { options.script = v; }},
                     {"log", "FILE", "record what is drawn in which order", [&](auto& v) { options.log = v; }},
                     {"quiet", nullptr, "no remarks on standard error", [&](auto&) { options.quiet = true; }},
                 });
    options.drawings = line->parse(arguments);
    options.answer = line->answer();
    if (options.answer.empty() && options.drawings.empty()) line->fail(L"a drawing must be named");
    return options;
}

}
