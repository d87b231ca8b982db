// orn-plot draws a drawing into a picture and prints a table of its measurements.
#include "drawing/Picture.h"
#include "drawing/Program.h"
#include "drawing/Reading.h"
#include "drawing/System.h"
#include "plot/Options.h"
#include "plot/Table.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>

namespace {

/// A line on the terminal that says how far the work is. It appears when the work takes longer than a second.
class Progress {
public:
    ~Progress() { clear(); }

    void show(std::uint64_t count, char const* what) {
        Clock::time_point const now = Clock::now();
        if (!drawing::errorIsTerminal() || now - latest_ < std::chrono::seconds{1}) return;
        latest_ = now - std::chrono::milliseconds{800};  // from now on more often
        shown_ = true;
        std::fprintf(stderr, "\r%llu %s", static_cast<unsigned long long>(count), what);
        std::fflush(stderr);
    }

    void clear() {
        // Blanks over the longest line that show() writes, which has fewer than 40 characters.
        if (shown_) std::fprintf(stderr, "\r%40s\r", "");
        shown_ = false;
    }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point latest_ = Clock::now();
    bool shown_ = false;
};

drawing::Drawing read(plot::Options const& options, Progress& progress) {
    drawing::ReadingOptions reading;
    reading.ink = drawing::inkOn(options.view.paper);
    reading.tolerance = options.tolerance;
    reading.progress = [&](std::uint64_t entities) { progress.show(entities, "entities read"); };
    reading.remark = [&](std::wstring const& what) {
        // The remark must not stand behind the line of progress.
        progress.clear();
        if (!options.quiet) drawing::remark("orn-plot", options.drawing, what);
    };
    drawing::Drawing drawing = drawing::readDrawing(options.drawing, reading);
    progress.clear();
    return drawing;
}

std::wstring shownName(plot::Options const& options) {
    return options.drawing == L"-" ? L"standard input" : options.drawing;
}

/// The part of the drawing on the layers that the user chose, or else on those that the drawing does not hide.
drawing::Drawing chosen(drawing::Drawing drawing, plot::Options const& options) {
    auto const isChosen = [&](drawing::Layer const& layer) {
        return options.layers.empty() ? !layer.hidden : options.layers.contains(layer.name);
    };
    for (std::wstring const& name : options.layers) {
        auto const isNamed = [&](drawing::Layer const& layer) { return layer.name == name; };
        if (std::ranges::any_of(drawing.layers(), isNamed)) continue;
        throw ORN::OrnError{shownName(options) + L": there is no layer '" + name + L"'"};
    }
    // The usual case needs no copy of the entities.
    if (std::ranges::all_of(drawing.layers(), isChosen)) return drawing;
    drawing::Drawing part = drawing.part(isChosen);
    if (part.entities().empty()) throw ORN::OrnError{shownName(options) + L": all layers are hidden (see --layers)"};
    return part;
}

drawing::Page placed(drawing::Drawing const& drawing, plot::Options const& options) {
    try {
        return {drawing, options.size, options.view};
    } catch (ORN::OrnError const& error) {
        throw ORN::OrnError{shownName(options) + L": " + error.wWhat()};
    }
}

/// No file may replace another one that the same command names. A stream, and the table that nobody asked for, are none.
void checkFiles(plot::Options const& options) {
    std::wstring const* const files[] = {&options.drawing, &options.picture, &options.table};
    for (int a = 0; a < 3; ++a) {
        for (int b = a + 1; b < 3; ++b) {
            auto const isFile = [](std::wstring const& name) { return !name.empty() && name != L"-"; };
            if (!isFile(*files[a]) || !isFile(*files[b])) continue;
            std::error_code none;
            // equivalent() only knows files that are there. Names of new files are compared as texts alone.
            bool const same = *files[a] == *files[b] ||
                              std::filesystem::equivalent(drawing::pathOf(*files[a]), drawing::pathOf(*files[b]), none);
            if (same) throw ORN::OrnError{*files[b] + L": this is the same file as " + *files[a]};
        }
    }
}

void run(plot::Options const& options) {
    // This comes first, because reading and drawing may take long.
    checkFiles(options);
    ContextGdiplus const graphics;
    Progress progress;
    drawing::Drawing const drawing = chosen(read(options, progress), options);
    drawing::Page const page = placed(drawing, options);
    drawing::savePicture(drawing, page, options.format, options.picture,
                         [&](int perCent) { progress.show(static_cast<std::uint64_t>(perCent), "% drawn"); });
    progress.clear();
    if (options.table.empty()) return;
    bool const onTerminal = options.table == L"-" && drawing::outputIsTerminal();
    plot::Names const names = onTerminal ? plot::Names::forTerminal : plot::Names::asTheyAre;
    drawing::saveText(plot::table(drawing, names), options.table);
}

}

int main(int argc, char* argv[]) {
    return drawing::runProgram("orn-plot", argc, argv, [](std::vector<std::wstring> const& arguments) {
        plot::Options const options = plot::parseOptions(arguments);
        options.answer.empty() ? run(options) : drawing::print(options.answer);
    });
}
