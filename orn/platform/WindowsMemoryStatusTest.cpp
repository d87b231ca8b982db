#include "orn/platform/WindowsMemoryStatus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

TEST(WindowsMemoryStatus, UsefulIsTheSmallerOfMemoryAndAddressSpace) {
    ORN::WindowsMemoryStatus status;
    auto const& figures = status.toPod();
    EXPECT_EQ(figures.length, 64u);
    EXPECT_GT(figures.totalPhysical, 0u);
    EXPECT_EQ(status.usefulRam(), std::min(figures.totalPhysical, figures.totalVirtual));
    if (char const* const limited = std::getenv("ORN_TEST_ADDRESS_SPACE")) {
        EXPECT_EQ(figures.totalVirtual, std::strtoull(limited, nullptr, 10));
    }

    ORN::WindowsMemoryStatus::PODTYPE record = figures;
    record.totalPhysical = 8000;
    record.totalVirtual = 4000;
    status = ORN::WindowsMemoryStatus{record};
    EXPECT_EQ(status.usefulRam(), 4000u);
    EXPECT_EQ(std::memcmp(&status, &record, sizeof record), 0);
    record.totalVirtual = 8001;
    EXPECT_EQ(ORN::WindowsMemoryStatus{record}.usefulRam(), 8000u);
}

}
