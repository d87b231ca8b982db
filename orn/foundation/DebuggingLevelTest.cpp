#include "orn/foundation/DebuggingLevel.h"

#include "orn/diagnosis/DebugStream.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(DebuggingLevel, HoldsFromItsInsertionToTheEndOfItsScope) {
    using DebugStream::debuggingLevel;
    EXPECT_EQ(debuggingLevel(), 2);
    {
        DebugStream::SetVerbose const outer{DebugStream::debugEverything};
        EXPECT_EQ(debuggingLevel(), 2);
        std::wostringstream other;
        other << outer;
        EXPECT_EQ(debuggingLevel(), 2);
        EXPECT_EQ(other.str(), L"");
        DebugStream::stream() << outer;
        EXPECT_EQ(debuggingLevel(), 3);
        {
            DebugStream::SetVerbose const inner{DebugStream::debugNothing};
            EXPECT_EQ(debuggingLevel(), 3);
            DebugStream::stream() << inner;
            EXPECT_EQ(debuggingLevel(), 0);
        }
        EXPECT_EQ(debuggingLevel(), 3);
    }
    EXPECT_EQ(debuggingLevel(), 2);

    DebugStream::DebuggingLevel within{};
    DebugStream::stream() << DebugStream::SetVerbose{DebugStream::debugFailures} << (within = debuggingLevel(), L"");
    EXPECT_EQ(within, 1);
    EXPECT_EQ(debuggingLevel(), 2);
}
