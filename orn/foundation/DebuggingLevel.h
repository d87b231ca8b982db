/// How much the process tells about itself in its diagnostic output.
#pragma once

#include "orn/Export.h"

#include <cstdint>
#include <iosfwd>

namespace DebugStream {

/// What the process writes into its diagnostic output. Each level includes the lower ones.
enum DebuggingLevel : std::int32_t {
    debugNothing = 0,     ///< nothing
    debugFailures = 1,    ///< failures
    debugNormal = 2,      ///< what a user may want to report; the level of a new process
    debugEverything = 3,  ///< also details that only a developer needs
};

ORN_API DebuggingLevel debuggingLevel() noexcept;  ///< The current level of the process. Any thread may ask.

/// A level for a scope. The constructor saves the current level, insertion into the debug stream makes the requested level
/// current, and the destructor restores the saved one. Scopes nest. All threads share the level.
class ORN_API SetVerbose {
public:
    /// Saves the current level, and changes nothing yet.
    explicit SetVerbose(DebuggingLevel level) noexcept : saved_{debuggingLevel()}, requested_{level} {}
    ~SetVerbose();
    SetVerbose(SetVerbose const&) = delete;
    SetVerbose& operator=(SetVerbose const&) = delete;

    /// Makes the requested level current if the stream is the debug stream, see DebugStream::stream(). Writes nothing.
    friend ORN_API std::wostream& operator<<(std::wostream& stream, SetVerbose const& verbose);

private:
    void doVerbose() const noexcept;

    DebuggingLevel saved_, requested_;
};

static_assert(sizeof(SetVerbose) == 8);

}
