#include "orn/os/Graphics.h"

#include <gtest/gtest.h>

namespace {

TEST(Graphics, SessionsNestAndEachIsStoppedOnce) {
    std::uintptr_t tokens[2] = {};
    std::uintptr_t hookTokens[2] = {};
    ORN::os::GraphicsHooks hooks[2] = {};
    for (int i : {0, 1}) {
        ASSERT_EQ(ORN::os::startGraphics(tokens[i], hooks[i]), 0u);
        ASSERT_NE(hooks[i].hook, nullptr);
        ASSERT_NE(hooks[i].unhook, nullptr);
        ASSERT_EQ(ORN::os::hookGraphics(hooks[i], hookTokens[i]), 0u);
    }
    for (int i : {1, 0}) {
        hooks[i].unhook(hookTokens[i]);
        ORN::os::stopGraphics(tokens[i]);
    }
}

}
