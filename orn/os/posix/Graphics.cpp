#include "orn/os/Graphics.h"

#include "orn/os/Fault.h"

namespace ORN::os {

namespace {

[[maybe_unused]] constexpr DWORD generalFailure = 31;

}

DWORD startGraphics(std::uintptr_t& token, GraphicsHooks& hooks) {
    if (ORN_OS_REFUSED("GdiplusStartup")) return generalFailure;
    token = 0;
    hooks = {[] {}, [](std::uintptr_t) {}};
    return 0;
}

DWORD hookGraphics(GraphicsHooks const&, std::uintptr_t& hookToken) {
    if (ORN_OS_REFUSED("NotificationHook")) return generalFailure;
    hookToken = 0;
    return 0;
}

void stopGraphics(std::uintptr_t) {}

}
