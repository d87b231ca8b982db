/// Scripts, which say line by line what a user would do.
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
    int window = 0;       ///< number of the drawing, from 1
    int a = 0, b = 0;     ///< a size or a place on the screen; or the number of rows, in a
    double number = 1;    ///< a factor
    std::wstring text{};  ///< a layer, a file or a note
};

/// Reads a script for windows with the numbers from 1 on. Blank lines and lines that begin with # have no effect. Throws ORN::OrnError
/// with one line of text, which names the file and the wrong line.
std::vector<Command> readScript(std::wstring const& file, int windows);

}
