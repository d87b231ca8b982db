/// Keeps GDI+ started for a scope.
#pragma once

#include "orn/Export.h"

#include <cstdint>

/// GDI+ is usable from construction to destruction, by any thread. Where the system has no GDI+ it is an empty scope.
class ORN_API ContextGdiplus {
public:
    [[nodiscard]] ContextGdiplus();  ///< WinError when GDI+ does not start; then nothing is held
    ~ContextGdiplus();
    ContextGdiplus(ContextGdiplus const&) = delete;

    /// Copies the fields: both scopes now stop the same session, and the one that stood here stays started. Good for
    /// exchanging sessions, where each is stopped once in the end.
    ContextGdiplus& operator=(ContextGdiplus const&);

private:
    std::uintptr_t token_ = 0;
    std::uintptr_t hookToken_ = 0;
    void (*unhook_)(std::uintptr_t hookToken) = nullptr;
};
