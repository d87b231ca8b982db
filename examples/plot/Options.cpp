#include "plot/Options.h"

#include "drawing/Picture.h"

#include "orn/foundation/Error.h"
#include "orn/text/Numbers.h"

#include <cmath>

namespace plot {

namespace {

constexpr LONG longestSide = 30000;
constexpr std::int64_t mostPixels = 50'000'000;

[[noreturn]] void fail(std::wstring const& what) { throw ORN::OrnError{L"orn-plot: " + what + L" (see --help)"}; }

double number(std::wstring const& text, std::wstring const& option) {
    double value = 0;
    if (!isDouble(&value, text.data(), text.size()) || !std::isfinite(value)) {
        fail(option + L": '" + text + L"' is not a number");
    }
    return value;
}

drawing::PageSize pageSize(std::wstring const& text) {
    std::size_t const x = text.find(L'x');
    LONG width = 0, height = 0;
    if (x == std::wstring::npos || !isLong(&width, text.data(), x) ||
        !isLong(&height, text.data() + x + 1, text.size() - x - 1)) {
        fail(L"--size: '" + text + L"' is not a size like 1200x900");
    }
    if (width < 1 || height < 1 || width > longestSide || height > longestSide ||
        std::int64_t{width} * height > mostPixels) {
        fail(L"--size: a page of " + text + L" pixels cannot be drawn: at most " + std::to_wstring(longestSide) +
             L" a side and " + std::to_wstring(mostPixels) + L" in all");
    }
    return {static_cast<int>(width), static_cast<int>(height)};
}

void setScale(drawing::View& view, std::wstring const& text) {
    std::size_t const comma = text.find(L',');
    if (comma == std::wstring::npos) fail(L"--scale: '" + text + L"' is not a pair of factors like 1,0.5");
    view.scaleX = number(text.substr(0, comma), L"--scale");
    view.scaleY = number(text.substr(comma + 1), L"--scale");
    if (view.scaleX == 0 || view.scaleY == 0) fail(L"--scale: a factor of 0 leaves nothing to draw");
}

}

char const* const usage =
    "Usage: orn-plot [options] DRAWING PICTURE\n"
    "\n"
    "Draws the lines and arcs of a DXF or CSV file into a picture (.png or .bmp) and prints a table of their measurements.\n"
    "Columns of CSV files: x1, y1, x2, y2; optional: bulge (tangent of a quarter of the arc's angle), layer, colour (#RRGGBB).\n"
    "\n"
    "  --size WxH        size of the picture in pixels (1200x900)\n"
    "  --scale SX,SY     scale the drawing along its axes\n"
    "  --mirror          mirror it left to right\n"
    "  --rotate DEGREES  rotate it anticlockwise\n"
    "  --help            show this text\n";

Options parseOptions(std::vector<std::wstring> const& arguments) {
    Options options;
    std::vector<std::wstring> names;
    bool onlyNames = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::wstring const& argument = arguments[i];
        auto const value = [&]() -> std::wstring const& {
            if (i + 1 == arguments.size()) fail(argument + L": the value is missing");
            return arguments[++i];
        };
        if (onlyNames || argument.size() < 2 || argument[0] != L'-') {
            names.push_back(argument);
        } else if (argument == L"--") {
            onlyNames = true;
        } else if (argument == L"--help") {
            options.help = true;
            return options;
        } else if (argument == L"--size") {
            options.size = pageSize(value());
        } else if (argument == L"--scale") {
            setScale(options.view, value());
        } else if (argument == L"--mirror") {
            options.view.mirrored = true;
        } else if (argument == L"--rotate") {
            options.view.degrees = number(value(), argument);
        } else {
            fail(L"unknown option " + argument);
        }
    }
    if (names.size() < 2) fail(names.empty() ? L"a drawing and a picture must be named" : L"a picture must be named");
    if (names.size() > 2) fail(L"'" + names[2] + L"' is one name too many");
    if (!drawing::isPictureName(names[1])) fail(names[1] + L": the name of a picture ends in .png or .bmp");
    options.drawing = names[0];
    options.picture = names[1];
    return options;
}

}
