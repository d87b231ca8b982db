#include "orn/text/QuarkTableImp.h"
#include "tests/support/Faults.h"

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

TEST(QuarkTableImp, EveryFailingAllocationStoresNothing) {
    // Enough texts for a second block and a larger hash table.
    int const failures = faults::failEveryAllocation([] {
        auto const table = std::make_unique<QuarkTableImp>();
        std::set<wchar_t const*> stored;
        for (int i = 0; i < 600; ++i) {
            wchar_t given[15];
            std::fill_n(given, 14, static_cast<wchar_t>(L'a' + i));
            given[14] = 0;
            try {
                stored.insert(table->intern(given));
            } catch (std::bad_alloc const&) {
                // Neither stuck nor half stored: the same text goes in now, and once only.
                wchar_t const* const place = table->intern(given);
                EXPECT_TRUE(std::equal(given, given + 15, place));
                EXPECT_EQ(table->intern(given), place);
                EXPECT_FALSE(stored.contains(place));
                throw;
            }
        }
    });
    EXPECT_GT(failures, 600);
}
