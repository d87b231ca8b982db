/// Scripts: what a user would do, written down.
#pragma once

#include <string>
#include <vector>

namespace view {

enum class Action {
    wait,
    activate,
    resize,
    move,
    minimise,
    restore,
    close,
    redraw,
    zoom,
    pan,
    fit,
    hold,
    held,
    release,
    hide,
    show,
    save,
    await,
    note,
    quit
};

/// One line of a script.
struct Command {
    std::wstring place;  ///< FILE:LINE, for messages
    std::wstring line;   ///< as it stands there
    Action action;
    std::size_t window = 0;  ///< index of the drawing
    int a = 0, b = 0;        ///< a size, a place on the screen, or in a the number of rows
    double number = 1;       ///< a factor
    std::wstring text{};     ///< a layer, a file or a note
};

/// Reads a script for so many windows. Blank lines, and lines that begin with #, are nothing. Throws ORN::OrnError, one
/// line that names the file and the line of what is wrong.
std::vector<Command> readScript(std::wstring const& file, std::size_t windows);

}
