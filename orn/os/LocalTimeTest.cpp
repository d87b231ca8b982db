#include "orn/os/LocalTime.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

TEST(LocalTime, IsTheRuntimesText) {
    for (std::time_t const time :
         {std::time_t{1}, std::time_t{951782400}, std::time_t{4102444799}, std::time(nullptr)}) {
        char const* const expected = std::ctime(&time);
        ASSERT_NE(expected, nullptr);
        EXPECT_EQ(ORN::os::localTimeText(time), expected);
    }
    EXPECT_EQ(ORN::os::localTimeText(std::numeric_limits<std::int64_t>::max()), "");
}

TEST(LocalTime, NowIsBetweenTwoReadingsOfTheClock) {
    std::int64_t const before = std::time(nullptr);
    std::int64_t const now = ORN::os::secondsSince1970();
    EXPECT_LE(before, now);
    EXPECT_LE(now, std::time(nullptr));
}

}
