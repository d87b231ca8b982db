#include "orn/threading/ThreadName.h"

#include "tests/support/ThreadName.h"

#include <gtest/gtest.h>

namespace {

TEST(ThreadName, NamingLeavesTheThreadRunningWhateverTheNameAndNumber) {
    ORN::setThreadName("", 0xFFFFFFFF);
    ORN::setThreadName("nobody", 0x7FFFFFFF);
    ORN::setThreadName("orn-test-thread that is cut", 0xFFFFFFFF);
    EXPECT_EQ(nameOfThisThread().value_or("orn-test-thread"), "orn-test-thread");
}

}
