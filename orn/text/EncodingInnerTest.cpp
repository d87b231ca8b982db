#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

namespace {

std::wstring errorOfPacking(std::wstring const& text, int size, int spared) {
    char buffer[8] = "before";
    faults::Refuse const refuse{"WideCharToMultiByte", spared};
    try {
        packTo(text, buffer, size);
    } catch (WinError const& error) {
        EXPECT_STREQ(buffer, "");
        return error.wWhat();
    }
    return L"nothing thrown";
}

TEST(EncodingInner, ARefusedConversionIsAnEmptyText) {
    faults::Refuse const refuse{"WideCharToMultiByte"};
    EXPECT_EQ(getMBS(L"text"), "");
    EXPECT_EQ(getMBS(std::wstring(500, L'x')), "");
    EXPECT_EQ(refuse.refusals(), 2);
    EXPECT_EQ(getMBS(L""), "");
    EXPECT_EQ(refuse.refusals(), 2);
}

TEST(EncodingInner, ARefusedDecodingIsAnEmptyText) {
    faults::Refuse const refuse{"MultiByteToWideChar"};
    EXPECT_EQ(getWCS("text"), L"");
    EXPECT_EQ(getWCS(""), L"");
    EXPECT_EQ(refuse.refusals(), 1);
}

TEST(EncodingInner, PackToTellsWhatFailed) {
    DWORD const invalidFlags = 1004;
    std::wstring const told = WinError{L"WideCharToMultiByte in packTo", invalidFlags}.wWhat();
    EXPECT_EQ(told.substr(told.size() - 39), L"\" calling WideCharToMultiByte in packTo");
    EXPECT_EQ(errorOfPacking(L"abc", 8, 0), told);
    EXPECT_EQ(errorOfPacking(L"abc", 3, 1), told);  // the whole text does not fit, its first prefix is refused
}

// The empty prefix is offered as well, and is not a length that can be converted.
TEST(EncodingInner, PackToFailsWhenNotEvenOneCodePointFits) {
    if (getMBS(L"\u4E2D").size() < 2) GTEST_SKIP() << "one byte a character";
    char buffer[2] = "x";
    EXPECT_THROW(packTo(L"\u4E2D", buffer, 2), WinError);
    EXPECT_STREQ(buffer, "");
}

TEST(EncodingInner, LackOfMemoryLeavesNothingBehind) {
    std::wstring const wide(70, L'x');
    std::string const narrow(5000, 'x');
    long const blocks = faults::liveBlocks();
    char buffer[8];
    int const failures = faults::failEveryAllocation(
        [&] {
            utf8(narrow);
            getWCS(narrow);
            getMBS(wide);
            packTo(wide, buffer, 8);
        },
        [&](bool) { EXPECT_EQ(faults::liveBlocks(), blocks); });
    EXPECT_GE(failures, 5);
}

}
