#include "orn/threading/ThreadName.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

TEST(ThreadName, NamingLeavesTheThreadRunningWhateverTheNameAndNumber) {
    ORN::setThreadName("a name that is longer than some systems take", 0xFFFFFFFF);
    ORN::setThreadName("", 0xFFFFFFFF);
    ORN::setThreadName("nobody", 0x7FFFFFFF);
    ORN::setThreadName("orn-test-thread", 0xFFFFFFFF);

    std::ifstream told{"/proc/thread-self/comm"};
    std::string name;
    if (std::getline(told, name)) {
        EXPECT_EQ(name, "orn-test-thread");
    }
}

}
