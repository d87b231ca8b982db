#include "orn/colour/DIBitmap.h"

#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

TEST(DIBitmap, OneMebibyteAndMoreComesFromTheSystem) {
    faults::Refuse const refuse{"VirtualAlloc"};
    long const before = faults::liveBlocks();
    {
        DIBitmap const fromHeap{0x100000 - 2};
        EXPECT_EQ(faults::liveBlocks(), before + 1);
        EXPECT_EQ(refuse.refusals(), 0);
    }
    EXPECT_EQ(faults::liveBlocks(), before);
    try {
        DIBitmap const fromSystem{0x100001 - 2};
        ADD_FAILURE();
    } catch (std::bad_alloc const& error) {
        EXPECT_STREQ(error.what(), "bad allocation");
    }
    EXPECT_EQ(refuse.refusals(), 1);
}

}
