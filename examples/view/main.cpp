// orn-view: drawings in windows, drawn in the background.
#include "drawing/Program.h"
#include "view/Options.h"
#include "view/Player.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"

#include <algorithm>
#include <deque>

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

/// Until the script says quit, or all windows are closed and the script is played.
void serve(Views const& views, view::Player& player) {
    for (;;) {
        player.play();
        if (player.quits() || (player.atEnd() && !anyOpen(views))) return;
        if (!view::Window::handleEvent(player.waitsForFile() ? 50 : -1)) return;
    }
}

/// The drawings that can be read. What is wrong with the others is said; it ends the program when none is left.
std::deque<view::Sheet> readSheets(view::Options const& options) {
    std::deque<view::Sheet> sheets;
    for (std::wstring const& drawing : options.drawings) {
        try {
            sheets.emplace_back(drawing, [&](std::wstring const& what) {
                if (!options.quiet) drawing::remark("orn-view", drawing, what);
            });
        } catch (ORN::OrnError const& error) {
            bool const isLast = &drawing == &options.drawings.back();
            if (sheets.empty() && isLast) throw;
            drawing::complain(error.wWhat());
        }
    }
    return sheets;
}

void run(view::Options const& options) {
    std::deque<view::Sheet> const sheets = readSheets(options);
    std::vector<view::Command> commands;
    if (!options.script.empty()) commands = view::readScript(options.script, sheets.size());

    view::Log log{options.log};
    {
        ContextGdiplus const graphics;
        view::Desk desk{log};
        for (view::Sheet const& sheet : sheets) {
            for (Quark const layer : sheet.hiddenByItself()) desk.layers.show(layer, false);
        }
        Views views;
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            int const number = static_cast<int>(i) + 1;
            views.push_back(std::make_unique<view::View>(desk, sheets[i], number, options.size, cornerOf(i)));
        }
        std::for_each(views.rbegin(), views.rend(), [](auto const& view) { view->start(); });

        view::Player player{desk, views, std::move(commands)};
        serve(views, player);
        for (auto const& view : views) view->close();
    }
    log.write(L"end");
    log.close();
}

}

int main(int argc, char* argv[]) {
    return drawing::runProgram("orn-view", argc, argv, [](std::vector<std::wstring> const& arguments) {
        view::Options const options = view::parseOptions(arguments);
        options.answer.empty() ? run(options) : drawing::print(options.answer);
    });
}
