#include "orn/platform/WindowsMemoryStatus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

TEST(WindowsMemoryStatus, UsefulIsTheSmallerOfMemoryAndAddressSpace) {
    ORN::WindowsMemoryStatus status;
    auto const& figures = status.toPod();
    EXPECT_EQ(figures.length, 64u);
    EXPECT_TRUE(figures.memoryLoad <= 100 && figures.totalVirtual % 4096 == 0);
    EXPECT_TRUE(figures.availablePhysical > 1 << 20 && figures.availablePhysical <= figures.totalPhysical);
    EXPECT_TRUE(figures.availablePageFile > 1 << 20 && figures.availablePageFile <= figures.totalPageFile);
    EXPECT_LT(figures.availableVirtual, figures.totalVirtual);
    EXPECT_EQ(status.usefulRam(), std::min(figures.totalPhysical, figures.totalVirtual));
    if (char const* const limited = std::getenv("ORN_TEST_ADDRESS_SPACE")) {
        EXPECT_EQ(figures.totalVirtual, std::strtoull(limited, nullptr, 10));
    } else {
        EXPECT_GT(figures.totalVirtual, reinterpret_cast<std::uintptr_t>(&status));
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
