#include "view/Player.h"

#include "drawing/Picture.h"
#include "drawing/System.h"

#include "orn/foundation/Error.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace view {

namespace {

[[noreturn]] void fail(Command const& command, std::wstring const& what) {
    throw ORN::OrnError{command.place + L": " + what};
}

std::wstring nameOf(Command const& command) { return L"window " + std::to_wstring(command.window); }

}

Player::Player(Desk& desk, std::vector<std::unique_ptr<View>> const& views, std::vector<Command> commands)
    : desk_{desk}, views_{views}, commands_{std::move(commands)} {}

void Player::play() {
    while (!atEnd() && !quits_) {
        Command const& command = commands_[next_];
        // A command that waits is performed again and again, and recorded once.
        if (!begun_) desk_.log.write(L"> " + command.line);
        begun_ = true;
        if (!perform(command)) return;
        begun_ = false;
        ++next_;
    }
}

/// False when the command has to wait.
bool Player::perform(Command const& command) {
    switch (command.action) {
        case Action::wait: return waitForPictures(command);
        case Action::hide: desk_.layers.show(layer(command), false); return true;
        case Action::show: desk_.layers.show(layer(command), true); return true;
        case Action::await: return waitForFile(command);
        case Action::note: return true;
        case Action::quit: quits_ = true; return true;
        default: break;
    }

    auto const isMeant = [&](std::unique_ptr<View> const& view) { return view->number() == command.window; };
    auto const found = std::ranges::find_if(views_, isMeant);
    if (found == views_.end()) fail(command, L"the drawing of " + nameOf(command) + L" cannot be read");
    View& view = **found;
    if (!view.isOpen()) fail(command, nameOf(command) + L" is closed");
    switch (command.action) {
        case Action::activate: view.activate(); break;
        case Action::resize:
            if (!view.resize({command.a, command.b})) fail(command, nameOf(command) + L" cannot get this size");
            break;
        case Action::move:
            if (!view.move({command.a, command.b})) fail(command, nameOf(command) + L" cannot be put there");
            break;
        case Action::minimise: view.minimise(); break;
        case Action::restore: view.restore(); break;
        case Action::close: view.close(); break;
        case Action::redraw: view.redraw(); break;
        case Action::zoom: view.zoom(command.number, {command.a, command.b}); break;
        case Action::pan: view.pan(command.a, command.b); break;
        case Action::fit: view.fit(); break;
        case Action::hold: view.hold(command.a); break;
        case Action::held: return waitForHold(command, view);
        case Action::release: view.release(); break;
        case Action::save: save(command, view); break;
        default: break;
    }
    return true;
}

bool Player::waitForPictures(Command const& command) const {
    for (std::unique_ptr<View> const& view : views_) {
        // Nothing is drawn for these windows, so waiting for them would never end.
        if (!view->isOpen() || view->isMinimised()) continue;
        if (!view->progress().failure.empty()) fail(command, view->progress().failure);
        if (!view->progress().complete) return false;
    }
    for (std::unique_ptr<View> const& view : views_) {
        // The commands that follow may look at the screen, and the system would paint later.
        if (view->isOpen()) view->showNow();
    }
    return true;
}

bool Player::waitForHold(Command const& command, View& view) const {
    // A picture that is complete never stops any more: better an error than a wait without an end.
    if (view.progress().complete) fail(command, nameOf(command) + L" is drawn and was not held");
    if (!view.progress().failure.empty()) fail(command, view.progress().failure);
    if (!view.progress().held && view.isMinimised()) fail(command, nameOf(command) + L" is minimised and was not held");
    return view.progress().held;
}

bool Player::waitForFile(Command const& command) {
    std::error_code none;
    // No message comes when a file appears. The flag makes the main loop look again after a moment.
    waitsForFile_ = !std::filesystem::exists(drawing::pathOf(command.text), none);
    return !waitsForFile_;
}

void Player::save(Command const& command, View const& view) const {
    if (!view.progress().complete) fail(command, nameOf(command) + L" is not drawn yet");
    try {
        drawing::savePicture(view.progress().picture->bitmap(), command.text);
    } catch (ORN::OrnError const& error) {
        fail(command, error.wWhat());
    }
}

Quark Player::layer(Command const& command) const {
    Quark const layer = Quark::create(command.text.c_str());
    for (std::unique_ptr<View> const& view : views_) {
        if (view->sheet().has(layer)) return layer;
    }
    // Such a name is a mistake in the script: without an error nobody would notice it.
    fail(command, L"no drawing has a layer '" + command.text + L"'");
}

}
