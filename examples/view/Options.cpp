#include "view/Options.h"

#include "orn/foundation/Error.h"
#include "orn/text/Numbers.h"

namespace view {

namespace {

[[noreturn]] void fail(std::wstring const& what) { throw ORN::OrnError{L"orn-view: " + what + L" (see --help)"}; }

}

char const* const usage =
    "Usage: orn-view [options] DRAWING.csv...\n"
    "\n"
    "Shows each drawing in a window of its own. They are drawn in the background, the window in front first.\n"
    "F5 draws a picture anew; the menu shows and hides layers, in all windows at once.\n"
    "\n"
    "  --size WxH     size of each picture in pixels, at first (480x360)\n"
    "  --script FILE  do what the lines of a file say:\n"
    "                   wait                  until all is drawn\n"
    "                   activate N            the Nth drawing's window\n"
    "                   resize N WxH          so that its picture has this size\n"
    "                   move N X,Y            so that its picture has this corner on the screen\n"
    "                   minimise N, restore N, close N\n"
    "                   redraw N              from the first row\n"
    "                   hold N ROWS           its drawing is to stand still where it has so many rows\n"
    "                   held N                until it stands still\n"
    "                   release N             it goes on\n"
    "                   hide LAYER, show LAYER\n"
    "                   save N PICTURE        the whole picture (.png or .bmp)\n"
    "                   await FILE            until there is such a file\n"
    "                   note TEXT             a line in the record\n"
    "                   quit\n"
    "  --log FILE     record what is drawn in which order\n"
    "  --help         show this text\n";

bool parsePair(std::wstring const& text, wchar_t separator, int& first, int& second) {
    std::size_t const at = text.find(separator);
    LONG a = 0, b = 0;
    if (at == std::wstring::npos || !isLong(&a, text.data(), at) ||
        !isLong(&b, text.data() + at + 1, text.size() - at - 1)) {
        return false;
    }
    first = static_cast<int>(a);
    second = static_cast<int>(b);
    return true;
}

Options parseOptions(std::vector<std::wstring> const& arguments) {
    Options options;
    bool onlyNames = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::wstring const& argument = arguments[i];
        auto const value = [&]() -> std::wstring const& {
            if (i + 1 == arguments.size() || arguments[i + 1].empty()) fail(argument + L": the value is missing");
            return arguments[++i];
        };
        if (onlyNames || argument.empty() || argument[0] != L'-') {
            options.drawings.push_back(argument);
        } else if (argument == L"--") {
            onlyNames = true;
        } else if (argument == L"--help") {
            options.help = true;
            return options;
        } else if (argument == L"--size") {
            std::wstring const& text = value();
            auto& [width, height] = options.size;
            if (!parsePair(text, L'x', width, height)) fail(L"--size: '" + text + L"' is not a size like 480x360");
            if (width < 1 || height < 1 || width > 10000 || height > 10000) {
                fail(L"--size: a window cannot show a picture of " + text + L" pixels");
            }
        } else if (argument == L"--script") {
            options.script = value();
        } else if (argument == L"--log") {
            options.log = value();
        } else {
            fail(L"unknown option " + argument);
        }
    }
    if (options.drawings.empty()) fail(L"a drawing must be named");
    return options;
}

}
