#include "orn/foundation/DebugStream.h"

#include "orn/os/Types.h"
#include "orn/threading/Lock.h"
#include "tests/support/Tally.h"

#include <gtest/gtest.h>

#include <climits>
#include <thread>

namespace {

TEST(DebugStream, WritesIntegersInBothBases) {
    EXPECT_EQ(DebugStream::decimal(-1) + DebugStream::decimal(INT_MIN), L"-1-2147483648");
    EXPECT_EQ(DebugStream::hexadecimal(-1) + DebugStream::hexadecimal(0x1AF) + DebugStream::hexadecimal(0),
              L"ffffffff1af0");
}

TEST(DebugStream, ALevelHoldsFromItsInsertionToTheEndOfItsScope) {
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

TEST(DebugStream, FlushWaitsForThoseWhoWrite) {
    DebugStream::stream();
    Tally flushed;
    std::thread flusher;
    {
        ExclusiveLock const writing{DebugStream::lock()};
        flusher = std::thread{[&] {
            DebugStream::flush();
            ++flushed;
        }};
        // Long enough for a flush that does not wait.
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        EXPECT_EQ(flushed, 0);
    }
    flusher.join();
    EXPECT_EQ(flushed, 1);
    EXPECT_EQ(DebugStream::lock(), 0);
}

TEST(DebugStream, NamesTheCallingThread) {
    auto const number = [] {
        std::wostringstream text;
        text << DebugStream::GCTID{};
        return text.str();
    };
    std::wstring const here = number();
    std::wstring there;
    std::thread{[&] { there = number(); }}.join();
    EXPECT_EQ(here, number());
    EXPECT_NE(here, there);
    EXPECT_EQ(here.find_first_not_of(L"0123456789"), std::wstring::npos);
}

}
