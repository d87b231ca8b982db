#include "orn/os/CriticalSection.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(CriticalSection, AdmitsOneThreadAtATimeAsOftenAsItLikes) {
    ORN::os::CriticalSection section{};
    ORN::os::initialise(section);
    long count = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([&] {
            for (int round = 0; round < 20'000; ++round) {
                ORN::os::enter(section);
                ORN::os::enter(section);
                long const before = count;
                ORN::os::leave(section);
                count = before + 1;
                ORN::os::leave(section);
            }
        });
    threads.clear();
    EXPECT_EQ(count, 60'000);
    ORN::os::destroy(section);
}

}
