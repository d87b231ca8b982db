// orn-plot: a drawing goes in, a picture and a table come out.
#include "drawing/Picture.h"
#include "drawing/Reading.h"
#include "drawing/Render.h"
#include "drawing/System.h"
#include "plot/Options.h"
#include "plot/Table.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <chrono>
#include <cstdio>
#include <new>
#include <string>

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
        std::fprintf(stderr, "\r%llu rows read", static_cast<unsigned long long>(rows));
        std::fflush(stderr);
    }

private:
    using Clock = std::chrono::steady_clock;

    void clear() {
        if (shown_) std::fprintf(stderr, "\r%40s\r", "");
    }

    Clock::time_point latest_ = Clock::now();
    bool shown_ = false;
};

void write(std::string const& text, std::FILE* stream) {
    if (std::fwrite(text.data(), 1, text.size(), stream) != text.size() || std::fflush(stream) != 0) {
        throw ORN::OrnError{L"orn-plot: the table cannot be written"};
    }
}

drawing::Drawing read(std::wstring const& file) {
    Progress progress;
    return drawing::readDrawing(file, [&](std::uint64_t rows) { progress.show(rows); });
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
    write(plot::table(drawing), stdout);
}

int fail(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';  // one line, whatever a file name or a field holds
    }
    std::fprintf(stderr, "%s\n", text.c_str());
    return 1;
}

}

int main(int argc, char* argv[]) {
    try {
        drawing::prepareOutput();
        plot::Options const options = plot::parseOptions(drawing::arguments(argc, argv));
        if (options.help) {
            write(plot::usage, stdout);
        } else {
            run(options);
        }
        return 0;
    } catch (ORN::OrnError const& error) {
        return fail(utf8(error.wWhat()));
    } catch (std::bad_alloc const&) {
        return fail("orn-plot: there is not enough memory");
    } catch (std::exception const& error) {
        return fail(std::string{"orn-plot: "} + error.what());
    }
}
