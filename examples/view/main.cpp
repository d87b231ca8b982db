// orn-view: drawings in windows, drawn in the background.
#include "drawing/System.h"
#include "view/Options.h"
#include "view/Player.h"

#include "orn/colour/ContextGdiplus.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <new>

#include <commctrl.h>

namespace {

using Views = std::vector<std::unique_ptr<view::View>>;

/// One lies over the other like a fan; the last is in front.
POINT cornerOf(std::size_t index) {
    LONG const step = static_cast<LONG>(index % 8);
    return {40 + 150 * step, 30 + 110 * step};
}

bool anyOpen(Views const& views) {
    return std::any_of(views.begin(), views.end(), [](auto const& view) { return view->isOpen(); });
}

/// Until the script says quit, or all windows are closed and the script is played.
void serve(view::Desk& desk, Views const& views, view::Player& player) {
    for (;;) {
        player.play();
        if (desk.failure) std::rethrow_exception(desk.failure);
        if (player.quits() || (player.atEnd() && !anyOpen(views))) return;
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) return;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void run(view::Options const& options) {
    std::vector<view::Command> commands;
    if (!options.script.empty()) commands = view::readScript(options.script, options.drawings.size());
    std::deque<view::Sheet> sheets;
    for (std::wstring const& drawing : options.drawings) sheets.emplace_back(drawing);

    view::Log log{options.log};
    {
        ContextGdiplus const graphics;
        InitCommonControls();
        view::View::registerClass();
        view::Desk desk{log};
        Views views;
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            int const number = static_cast<int>(i) + 1;
            views.push_back(std::make_unique<view::View>(desk, sheets[i], number, options.size, cornerOf(i)));
        }
        std::for_each(views.rbegin(), views.rend(), [](auto const& view) { view->start(); });

        view::Player player{desk, views, std::move(commands)};
        serve(desk, views, player);
        for (auto const& view : views) view->close();
        if (desk.failure) std::rethrow_exception(desk.failure);
    }
    log.write(L"end");
    log.close();
}

int fail(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';  // one line, whatever a file name holds
    }
    std::fprintf(stderr, "%s\n", text.c_str());
    return 1;
}

}

int main(int argc, char* argv[]) {
    try {
        drawing::prepareOutput();
        view::Options const options = view::parseOptions(drawing::arguments(argc, argv));
        if (options.help) {
            if (std::fputs(view::usage, stdout) < 0 || std::fflush(stdout) != 0) return fail("orn-view: no output");
        } else {
            run(options);
        }
        return 0;
    } catch (ORN::OrnError const& error) {
        return fail(utf8(error.wWhat()));
    } catch (std::bad_alloc const&) {
        return fail("orn-view: there is not enough memory");
    } catch (std::exception const& error) {
        return fail(std::string{"orn-view: "} + error.what());
    }
}
