#include "orn/os/Graphics.h"

#include <gtest/gtest.h>

namespace {

// How sessions nest is held above the seam.
TEST(Graphics, ASessionStartsHooksAndStops) {
    std::uintptr_t token = 0, hookToken = 0;
    ORN::os::GraphicsHooks hooks{};
    ASSERT_EQ(ORN::os::startGraphics(token, hooks), 0u);
    ASSERT_TRUE(hooks.hook != nullptr && hooks.unhook != nullptr);
    ASSERT_EQ(ORN::os::hookGraphics(hooks, hookToken), 0u);
    hooks.unhook(hookToken);
    ORN::os::stopGraphics(token);
}

}
