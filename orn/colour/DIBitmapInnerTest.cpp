#include "orn/colour/DIBitmap.h"

#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <cstring>

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

TEST(DIBitmap, AFailedAssignmentChangesNothing) {
    DIBitmap const large{2'000'000};
    DIBitmap const small{70};
    DIBitmap target{3, 2, 24, 0};
    DIBitmap const wanted{target};
    {
        faults::Refuse const refuse{"VirtualAlloc"};
        EXPECT_THROW(target = large, std::bad_alloc);
    }
    {
        faults::AllocationFails const fails{0};
        EXPECT_THROW(target = small, std::bad_alloc);
    }
    EXPECT_EQ(target.fileSize(), 78u);
    EXPECT_EQ(std::memcmp(target.fileData(), wanted.fileData(), 54), 0);
}

}
