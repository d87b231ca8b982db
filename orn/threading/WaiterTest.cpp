#include "orn/threading/Waiter.h"

#include <gtest/gtest.h>

namespace {

TEST(Waiter, NothingToWaitForIsAFailureAndNoEndlessWait) {
    EXPECT_EQ(ORN::Threading::BoringWaiter{}(nullptr), 0xFFFFFFFFu);
}

}
