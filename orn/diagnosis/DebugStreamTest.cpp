#include "orn/diagnosis/DebugStream.h"

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
    EXPECT_EQ(here, number());
    EXPECT_EQ(here.find_first_not_of(L"0123456789"), std::wstring::npos);
    std::thread{[&] { EXPECT_NE(number(), here); }}.join();
}

}
