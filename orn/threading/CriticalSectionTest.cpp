#include "orn/threading/CriticalSection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

TEST(OrnSimpleLock, LeavesExactlyAsOftenAsItEntered) {
    using Guarded = void (*)(OrnCriticalSection&);
    Guarded const uses[] = {
        [](OrnCriticalSection& section) {
            OrnSimpleLock const lock{section, L"for a scope"};
        },
        [](OrnCriticalSection& section) {
            OrnSimpleLock lock{section, L"left early"};
            lock.Unlock();
        },
        [](OrnCriticalSection& section) {
            OrnSimpleLock lock{section, L"left"};
            lock.Unlock();
            lock.Lock(L"and back in");
        },
        [](OrnCriticalSection& section) {
            OrnSimpleLock lock{section, L"held"};
            lock.Lock(L"entered all the same");
            lock.Unlock();
            lock.Unlock();
        },
    };
    for (Guarded const use : uses) {
        OrnCriticalSection section{L"a label"};
        OrnSimpleLock held{section, L"around the use"};
        use(section);

        // A use that left once too often lets the other thread in early; one that left too seldom, never.
        std::atomic<bool> open{false};
        std::atomic<bool> early{false};
        std::thread other{[&] {
            OrnSimpleLock const lock{section, L"another thread"};
            early = !open;
        }};
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        open = true;
        held.Unlock();
        other.join();
        EXPECT_FALSE(early) << "use " << &use - uses;
    }
}

}
