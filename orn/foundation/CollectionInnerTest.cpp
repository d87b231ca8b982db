#include "orn/foundation/Collection.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <string>

using ORN::Collection;

TEST(CollectionMemory, ChunksComeAndGoOneByOne) {
    long const before = faults::liveBlocks();
    {
        Collection<int, 4> numbers;
        numbers.resize(4);
        EXPECT_EQ(faults::liveBlocks(), before);
        numbers.resize(5);
        EXPECT_EQ(faults::liveBlocks(), before + 2) << "the table and chunk 1";
        numbers.resize(9);
        EXPECT_EQ(faults::liveBlocks(), before + 3);
        numbers.resize(44);
        EXPECT_EQ(faults::liveBlocks(), before + 11) << "11 entries: the table holds";
        numbers.resize(45);
        EXPECT_EQ(faults::liveBlocks(), before + 12);
        numbers.pop_back();
        EXPECT_EQ(faults::liveBlocks(), before + 11);
        numbers.clear();
        EXPECT_EQ(faults::liveBlocks(), before + 1) << "the table never shrinks";
    }
    EXPECT_EQ(faults::liveBlocks(), before);
}

TEST(CollectionMemory, EveryFailingAllocationLeavesTheCountExact) {
    long const before = faults::liveBlocks();
    int const failures = faults::failEveryAllocation(
        [] {
            Collection<std::string, 2> texts;
            std::size_t pushed = 0;
            try {
                for (; pushed < 30; ++pushed) texts.emplace_back(100, 'x');
            } catch (std::bad_alloc const&) {
                EXPECT_EQ(texts.size(), pushed);
                texts.emplace_back("next");
                EXPECT_EQ(texts.back(), "next");
                throw;
            }
            Collection<std::string, 2> copy{texts};
            copy = texts;
        },
        [&](bool failed) {
            EXPECT_TRUE(failed);
            EXPECT_EQ(faults::liveBlocks(), before);
        });
    EXPECT_GT(failures, 100);
    EXPECT_EQ(faults::liveBlocks(), before);
}
