// orn-plot: a drawing goes in, a picture and a table come out.
#include "drawing/Picture.h"
#include "drawing/Program.h"
#include "drawing/Reading.h"
#include "drawing/Render.h"
#include "drawing/System.h"
#include "plot/Options.h"
#include "plot/Table.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

/// A line on a terminal that says how far reading is, once it takes longer than a second.
class Progress {
public:
    ~Progress() { clear(); }

    void show(std::uint64_t rows) {
        Clock::time_point const now = Clock::now();
        if (!drawing::errorIsTerminal() || now - latest_ < std::chrono::seconds{1}) return;
        latest_ = now - std::chrono::milliseconds{800};  // from now on more often
        shown_ = true;
        std::fprintf(stderr, "\r%llu entities read", static_cast<unsigned long long>(rows));
        std::fflush(stderr);
    }

    void clear() {
        if (shown_) std::fprintf(stderr, "\r%40s\r", "");
        shown_ = false;
    }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point latest_ = Clock::now();
    bool shown_ = false;
};

drawing::Drawing read(std::wstring const& file) {
    Progress progress;
    drawing::ReadingOptions options;
    options.progress = [&](std::uint64_t entities) { progress.show(entities); };
    options.remark = [&](std::wstring const& what) {
        progress.clear();
        std::fprintf(stderr, "orn-plot: %s: %s\n", utf8(file).c_str(), utf8(what).c_str());
    };
    drawing::Drawing drawing = drawing::readDrawing(file, options);
    auto const shown = [](drawing::Layer const& layer) { return !layer.hidden; };
    if (std::ranges::all_of(drawing.layers(), shown)) return drawing;
    return drawing.part(shown);
}

drawing::Page placed(drawing::Drawing const& drawing, plot::Options const& options) {
    try {
        return {drawing, options.size, options.view};
    } catch (ORN::OrnError const& error) {
        throw ORN::OrnError{options.drawing + L": " + error.wWhat()};
    }
}

void run(plot::Options const& options) {
    ContextGdiplus const graphics;
    drawing::Drawing const drawing = read(options.drawing);
    drawing::Page const page = placed(drawing, options);
    drawing::savePicture(drawing::renderPage(drawing, page), options.picture);
    drawing::print(plot::table(drawing));
}

}

int main(int argc, char* argv[]) {
    return drawing::runProgram("orn-plot", argc, argv, [](std::vector<std::wstring> const& arguments) {
        plot::Options const options = plot::parseOptions(arguments);
        options.help ? drawing::print(plot::usage) : run(options);
    });
}
