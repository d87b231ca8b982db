#include "orn/foundation/Collection.h"
#include "tests/support/Faults.h"

using ORN::Collection;

TEST(CollectionMemory, ChunksComeAndGoOneByOne) {
    long const before = faults::liveBlocks();
    {
        Collection<int, 4> numbers;
        // Beside the inline chunk 0: the table with chunk 1, the table again beyond eleven entries. It never shrinks.
        for (auto const& [size, blocks] : {std::pair{4, 0}, {5, 2}, {9, 3}, {44, 11}, {45, 12}, {44, 11}, {0, 1}}) {
            numbers.resize(static_cast<std::size_t>(size));
            EXPECT_EQ(faults::liveBlocks(), before + blocks) << size;
        }
        Collection<int, 4> full;
        full.resize(44);
        faults::AllocationFails const second{1};
        EXPECT_THROW(full.resize(45), std::bad_alloc) << "the table and the chunk";
    }
    EXPECT_EQ(faults::liveBlocks(), before);
}

TEST(CollectionMemory, EveryFailingAllocationLeavesTheCountExact) {
    int const failures = faults::failEveryAllocation([] {
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
    });
    EXPECT_GT(failures, 100);
}
