// orn-view: drawings in windows, drawn in the background.
#include "drawing/Program.h"
#include "drawing/System.h"
#include "view/Options.h"
#include "view/Player.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <utility>

namespace {

using Views = std::vector<std::unique_ptr<view::View>>;

/// One lies over the other like a fan; the last is in front.
view::Corner cornerOf(std::size_t index) {
    int const step = static_cast<int>(index % 8);
    return {40 + 150 * step, 30 + 110 * step};
}

bool anyOpen(Views const& views) {
    return std::any_of(views.begin(), views.end(), [](auto const& view) { return view->isOpen(); });
}

/// A drawing and the number of its window, which is its place among all that were named. Those that cannot be read keep
/// theirs.
struct Numbered {
    int number;
    view::Sheet sheet;
};

/// A deque: the views refer to sheets, which must not move when more are read.
using Sheets = std::deque<Numbered>;

void readSheet(Sheets& sheets, int number, std::wstring const& drawing, view::Options const& options) {
    std::function<void(std::wstring const&)> const remark = [&](std::wstring const& what) {
        if (!options.quiet) drawing::remark("orn-view", drawing, what);
    };
    sheets.push_back({number, view::Sheet{drawing, remark}});
}

/// The drawings that can be read. What is wrong with the others is said; it ends the program when none is left.
Sheets readSheets(view::Options const& options) {
    Sheets sheets;
    int number = 0;
    for (std::wstring const& drawing : options.drawings) {
        try {
            readSheet(sheets, ++number, drawing, options);
        } catch (ORN::OrnError const& error) {
            bool const isLast = &drawing == &options.drawings.back();
            // runProgram then says what is wrong and gives the exit status 1.
            if (sheets.empty() && isLast) throw;
            drawing::complain(error.wWhat());
        }
    }
    return sheets;
}

void addView(Views& views, view::Desk& desk, Numbered const& drawing, drawing::PageSize size) {
    view::Corner const corner = cornerOf(views.size());
    views.push_back(std::make_unique<view::View>(desk, drawing.sheet, drawing.number, size, corner));
}

void hideLayers(view::Desk& desk, view::Sheet const& sheet) {
    for (Quark const layer : sheet.hiddenByItself()) desk.layers.show(layer, false);
}

/// Windows for the drawings that the user has dropped or chosen meanwhile.
void openAsked(view::Desk& desk, Sheets& sheets, Views& views, view::Options const& options, int& latest) {
    // They are taken out first, because messages that come meanwhile may ask for more.
    for (std::wstring const& drawing : std::exchange(desk.asked, {})) {
        try {
            readSheet(sheets, latest + 1, drawing, options);
            ++latest;
            hideLayers(desk, sheets.back().sheet);
            addView(views, desk, sheets.back(), options.size);
            views.back()->start();
        } catch (ORN::OrnError const& error) {
            drawing::complain(error.wWhat());
        }
    }
}

void run(view::Options const& options) {
    Sheets sheets = readSheets(options);
    int latest = static_cast<int>(options.drawings.size());
    std::vector<view::Command> commands;
    if (!options.script.empty()) commands = view::readScript(options.script, latest);

    view::Log log{options.log};
    {
        ContextGdiplus const graphics;
        view::Desk desk{log};
        for (Numbered const& drawing : sheets) hideLayers(desk, drawing.sheet);
        Views views;
        for (Numbered const& drawing : sheets) addView(views, desk, drawing, options.size);
        // The one in front starts first: otherwise each window would interrupt the drawing of the one behind it.
        std::for_each(views.rbegin(), views.rend(), [](auto const& view) { view->start(); });

        view::Player player{desk, views, std::move(commands)};
        // Until the script says quit, or all windows are closed and the script is played.
        for (;;) {
            player.play();
            openAsked(desk, sheets, views, options, latest);
            if (player.quits() || (player.atEnd() && !anyOpen(views))) break;
            // No message comes when a file appears that a script waits for: play() looks every 50 milliseconds.
            if (!view::Window::handleEvent(player.waitsForFile() ? 50 : -1)) break;
        }
        // What cannot be closed throws here, and not unseen in a destructor.
        for (auto const& view : views) view->close();
    }
    // The worker has ended with the desk: nothing is written behind this line.
    log.write(L"end");
    log.close();
}

}

int main(int argc, char* argv[]) {
    return drawing::runProgram("orn-view", argc, argv, [](std::vector<std::wstring> const& arguments) {
        drawing::leaveOwnConsole();
        view::Options const options = view::parseOptions(arguments);
        options.answer.empty() ? run(options) : drawing::print(options.answer);
    });
}
