#include "orn/platform/WerRegisteredMemoryBlock.h"

#include "orn/foundation/Error.h"
#include "orn/platform/SystemLibrary.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(!std::is_copy_constructible_v<ORN::WerRegisteredMemoryBlock>);
static_assert(!std::is_copy_assignable_v<ORN::WerRegisteredMemoryBlock>);

TEST(WerRegisteredMemoryBlock, LargeSizesAreRefusedWhereThereIsARegistration) {
    bool const windows = ORN::LoadSystemLibrary(L"Kernel32.dll") != nullptr;
    int data[4] = {};
    { ORN::WerRegisteredMemoryBlock const block{data, sizeof data}; }
    try {
        ORN::WerRegisteredMemoryBlock const block{data, 0x100000000};
        EXPECT_FALSE(windows);
    } catch (ORN::OrnError const& error) {
        EXPECT_TRUE(windows);
        EXPECT_EQ(std::wstring{error.wWhat()}, L"integer value right out of range");
    }
}

}
