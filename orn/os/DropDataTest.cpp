#include "orn/os/DropData.h"

#include "tests/support/DropObject.h"

#include <gtest/gtest.h>

namespace os = ORN::os;

namespace {

TEST(DropData, MemoryIsHeldAndGivenBackOnEveryWay) {
    std::vector<std::byte> const block{std::byte{1}, std::byte{2}, std::byte{3}};
    DropObject object;
    object.blocks[os::fileDropFormat] = block;
    {
        os::DroppedMemory const memory{object, os::fileDropFormat};
        ASSERT_TRUE(memory.delivered());
        ASSERT_GE(memory.bytes().size(), 3u);
        EXPECT_EQ(std::memcmp(memory.bytes().data(), block.data(), 3), 0);
        EXPECT_FALSE(object.whole());
    }
    EXPECT_TRUE(object.whole());
    {
        os::DroppedMemory const none{object, os::fileDropFormat + 1};
        EXPECT_TRUE(!none.delivered() && none.bytes().empty());
        object.medium = TYMED_GDI;
        os::DroppedMemory const other{object, os::fileDropFormat};
        EXPECT_TRUE(!other.delivered() && other.bytes().empty());
    }
    EXPECT_TRUE(object.whole());
    EXPECT_EQ(object.delivered, 2);
    EXPECT_EQ(os::clipboardFormat(L"Shell IDList Array"), drop::itemLists());
}

}
