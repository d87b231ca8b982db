#include "orn/foundation/DebuggingLevel.h"

#include <gtest/gtest.h>

TEST(DebuggingLevel, IsTwoAtStart) {
    EXPECT_EQ(DebugStream::debuggingLevel(), 2);
    EXPECT_EQ(sizeof(DebugStream::debuggingLevel()), 4u);
}
