/// Plays a script.
#pragma once

#include "view/Script.h"
#include "view/View.h"

#include <memory>
#include <vector>

namespace view {

class Player {
public:
    Player(Desk& desk, std::vector<std::unique_ptr<View>> const& views, std::vector<Command> commands);

    /// Performs commands up to one that has to wait. The caller calls it again whenever a message has been handled.
    /// Throws ORN::OrnError, which names the line of the script, when a command cannot be performed.
    void play();

    bool quits() const noexcept { return quits_; }                ///< the command quit was reached
    bool waitsForFile() const noexcept { return waitsForFile_; }  ///< play() is to be called again after a moment
    bool atEnd() const noexcept { return next_ == commands_.size(); }

private:
    bool perform(Command const& command);
    bool waitForPictures(Command const& command) const;
    bool waitForHold(Command const& command, View& view) const;
    bool waitForFile(Command const& command);
    void save(Command const& command, View const& view) const;
    Quark layer(Command const& command) const;

    Desk& desk_;
    std::vector<std::unique_ptr<View>> const& views_;
    std::vector<Command> commands_;
    std::size_t next_ = 0;
    bool begun_ = false;  ///< the next command has been recorded, and waits
    bool quits_ = false;
    bool waitsForFile_ = false;
};

}
