#include "orn/foundation/DebuggingLevel.h"

#include "orn/diagnosis/DebugStream.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace DebugStream;

TEST(DebuggingLevel, HoldsFromItsInsertionToTheEndOfItsScope) {
    std::vector<int> levels;
    auto const note = [&] { levels.push_back(debuggingLevel()); };
    std::wostringstream other;
    note();
    {
        SetVerbose const outer{debugEverything};
        other << outer;
        note();
        stream() << outer;
        note();
        {
            SetVerbose const inner{debugNothing};
            note();
            stream() << inner;
            note();
        }
        note();
    }
    note();
    stream() << SetVerbose{debugFailures} << (note(), L"");
    note();
    EXPECT_EQ(levels, (std::vector{2, 2, 3, 3, 0, 3, 2, 1, 2}));
    EXPECT_EQ(other.str(), L"");
}
