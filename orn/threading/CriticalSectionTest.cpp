#include "orn/threading/CriticalSection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(OrnSimpleLock, LeavesExactlyAsOftenAsItEntered) {
    // Each use holds a guard and then calls these of it.
    for (std::string const calls : {"", "U", "UL", "LUU"}) {
        OrnCriticalSection section{L"a label"};
        OrnSimpleLock held{section, L"around the use"};
        {
            OrnSimpleLock lock{section, L"the use"};
            for (char const call : calls) call == 'U' ? lock.Unlock() : lock.Lock(L"again");
        }

        // A use that left once too often lets the other thread in early; one that left too seldom, never.
        std::atomic<bool> open{false};
        std::jthread const other{[&] {
            OrnSimpleLock const lock{section, L"another thread"};
            EXPECT_TRUE(open) << calls;
        }};
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        open = true;
        held.Unlock();
    }
}

}
