#include "orn/os/Memory.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(Memory, BlocksAreZeroAlignedAndWritableToTheirLastByte) {
    for (std::size_t size : {std::size_t{1}, std::size_t{0x100001}, std::size_t{20'000'000}}) {
        void* const block = ORN::os::allocateLarge(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 4096, 0u);
        auto* const bytes = static_cast<unsigned char*>(block);
        EXPECT_TRUE(std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; }));
        std::fill(bytes, bytes + size, static_cast<unsigned char>(0xA5));
        ORN::os::freeLarge(block, size);
    }
}

TEST(Memory, WhatTheSystemDoesNotHaveIsNull) {
    EXPECT_EQ(ORN::os::allocateLarge(std::numeric_limits<std::size_t>::max() / 4), nullptr);
}

}
