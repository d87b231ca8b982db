/// Start and stop of the system's 2-D drawing library, GDI+. Where there is none, every call succeeds and does nothing.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>

namespace ORN::os {

/// The pair of functions that take the place of GDI+'s own background thread. They belong to GDI+ and hold as long as
/// the session that gave them.
struct GraphicsHooks {
    void (*hook)();  ///< of the system's own type: to be called by hookGraphics
    void (*unhook)(std::uintptr_t hookToken);
};

/// Starts GDI+: version 1, no debug callback, no background thread, external codecs allowed. Gives 0, or a Windows
/// error code with the arguments untouched. Each start needs one stop with its token.
DWORD startGraphics(std::uintptr_t& token, GraphicsHooks& hooks);

/// Calls the notification hook. Gives 0, or a Windows error code with the token untouched.
DWORD hookGraphics(GraphicsHooks const& hooks, std::uintptr_t& hookToken);

void stopGraphics(std::uintptr_t token);

}
