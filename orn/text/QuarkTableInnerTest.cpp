#include "orn/text/QuarkTableImp.h"

#include <gtest/gtest.h>

namespace {

std::wstring text(std::size_t units, wchar_t unit = L'x') { return std::wstring(units - 1, unit); }

}

TEST(QuarkTableImp, PacksTextsIntoBlocks) {
    constexpr std::size_t block = 8192;
    QuarkTableImp table;
    wchar_t const* const first = table.intern(L"abc");
    EXPECT_EQ(table.freeUnits(), block - 4);
    EXPECT_EQ(table.nextFree(), first + 4);
    EXPECT_EQ(table.intern(L""), first + 4);
    EXPECT_EQ(table.intern(L"abc"), first);
    EXPECT_EQ(table.freeUnits(), block - 5) << "a known text takes no room";
    EXPECT_EQ(table.intern(L"d"), first + 5);

    table.intern(text(block - 7).c_str());
    EXPECT_EQ(table.freeUnits(), 0u) << "filled to the last unit";
    table.intern(text(block, L'y').c_str());
    EXPECT_EQ(table.freeUnits(), 0u) << "exactly one block";
    table.intern(text(10001).c_str());
    EXPECT_EQ(table.freeUnits(), 0u) << "a block of its own";
    table.intern(L"next");
    EXPECT_EQ(table.freeUnits(), block - 5);
    table.intern(text(block - 4, L'z').c_str());
    EXPECT_EQ(table.freeUnits(), 4u) << "what was left is abandoned";
    EXPECT_STREQ(table.value(first), L"abc");
    EXPECT_EQ(table.value(first), first);
}

TEST(QuarkTableImp, OrdersByCodeUnits) {
    wchar_t const* const ascending[] = {L"", L"A", L"AB", L"B", L"a", L"\xd7ff", L"\xd83d\xde00", L"\xe000", L"\xffff"};
    QuarkOrdinalLess const less;
    for (std::size_t i = 0; i < std::size(ascending); ++i)
        for (std::size_t j = 0; j < std::size(ascending); ++j)
            EXPECT_EQ(less(ascending[i], ascending[j]), i < j) << i << ' ' << j;
}
