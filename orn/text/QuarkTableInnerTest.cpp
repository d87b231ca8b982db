#include "orn/text/QuarkTableImp.h"

#include <gtest/gtest.h>

namespace {

std::wstring text(std::size_t units, wchar_t unit = L'x') { return std::wstring(units - 1, unit); }

}

TEST(QuarkTableImp, PacksTextsIntoBlocks) {
    QuarkTableImp table;
    wchar_t const* const first = table.intern(L"abc");
    EXPECT_EQ(table.intern(L""), first + 4);
    EXPECT_EQ(table.intern(L"abc"), first);
    EXPECT_EQ(table.intern(L"d"), first + 5) << "a known text takes no room";
    EXPECT_EQ(table.intern(text(QuarkTableImp::blockUnits - 7).c_str()), first + 7) << "filled to the last unit";
    for (std::size_t const units : {QuarkTableImp::blockUnits, std::size_t{10001}}) {
        wchar_t const* const alone = table.intern(text(units).c_str());
        wchar_t const* const next = table.intern(text(units - 8000, L'y').c_str());
        EXPECT_TRUE(next < alone || next > alone + units) << "a block of its own, filled";
    }
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
