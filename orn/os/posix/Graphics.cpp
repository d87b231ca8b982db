#include "orn/os/Graphics.h"

#include "orn/os/Fault.h"
#include "orn/os/Status.h"

namespace ORN::os {

DWORD startGraphics(std::uintptr_t& token, GraphicsHooks& hooks) {
    if (ORN_OS_REFUSED("GdiplusStartup")) return errorGeneralFailure;
    token = 0;
    // Callers call these without a test for null.
    hooks = {[] {}, [](std::uintptr_t) {}};
    return 0;
}

DWORD hookGraphics(GraphicsHooks const&, std::uintptr_t& hookToken) {
    if (ORN_OS_REFUSED("NotificationHook")) return errorGeneralFailure;
    hookToken = 0;
    return 0;
}

void stopGraphics(std::uintptr_t) {}

}
