#include "orn/foundation/DebuggingLevel.h"

#include "orn/diagnosis/DebugStream.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace DebugStream;

TEST(DebuggingLevel, HoldsFromItsInsertionToTheEndOfItsScope) {
    std::wostringstream other;
    EXPECT_EQ(debuggingLevel(), 2);
    {
        SetVerbose const outer{debugEverything};
        other << outer;
        EXPECT_EQ(debuggingLevel(), 2);
        stream() << outer;
        {
            SetVerbose const inner{debugNothing};
            EXPECT_EQ(debuggingLevel(), 3);
            stream() << inner;
            EXPECT_EQ(debuggingLevel(), 0);
        }
        EXPECT_EQ(debuggingLevel(), 3);
    }
    int within = -1;
    stream() << SetVerbose{debugFailures} << (within = debuggingLevel());
    EXPECT_TRUE(within == 1 && debuggingLevel() == 2);
    EXPECT_EQ(other.str(), L"");
}
