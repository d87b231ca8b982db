#include "orn/colour/ContextGdiplus.h"

#include "orn/foundation/Error.h"
#include "orn/os/Graphics.h"

ContextGdiplus::ContextGdiplus() {
    ORN::os::GraphicsHooks hooks{};
    DWORD const startError = ORN::os::startGraphics(token_, hooks);
    if (startError != 0) throw WinError{L"GdiplusStartup", startError};

    DWORD const hookError = ORN::os::hookGraphics(hooks, hookToken_);
    if (hookError != 0) {
        // A constructor that throws runs no destructor, so this one stops what it has started.
        ORN::os::stopGraphics(token_);
        throw WinError{L"NotificationHook", hookError};
    }
    unhook_ = hooks.unhook;
}

ContextGdiplus::~ContextGdiplus() {
    // The function belongs to GDI+, and may only be called while that is started.
    unhook_(hookToken_);
    ORN::os::stopGraphics(token_);
}

ContextGdiplus& ContextGdiplus::operator=(ContextGdiplus const&) = default;
