#include "orn/text/Encoding.h"

#include "tests/support/Faults.h"
#include "tests/support/Thrown.h"

namespace {

TEST(EncodingInner, ARefusedConversionIsAnEmptyText) {
    faults::Refuse const refuse{"WideCharToMultiByte"};
    EXPECT_EQ(getMBS(L"text") + getMBS(std::wstring(500, L'x')), "");
    EXPECT_EQ(refuse.refusals(), 2);
    EXPECT_EQ(getMBS(L""), "");
    EXPECT_EQ(refuse.refusals(), 2);
}

TEST(EncodingInner, ARefusedDecodingIsAnEmptyText) {
    faults::Refuse const refuse{"MultiByteToWideChar"};
    EXPECT_EQ(getWCS("text") + getWCS(""), L"");
    EXPECT_EQ(refuse.refusals(), 1);
}

TEST(EncodingInner, PackToTellsWhatFailed) {
    DWORD const invalidFlags = 1004;
    std::wstring const told = WinError{L"WideCharToMultiByte in packTo", invalidFlags}.wWhat();
    EXPECT_TRUE(told.ends_with(L"\" calling WideCharToMultiByte in packTo"));
    struct {
        int size, spared;
    } const cases[] = {{8, 0}, {3, 1}};  // the whole text; its first prefix, after the whole did not fit
    for (auto const& [size, spared] : cases) {
        char buffer[8] = "before";
        faults::Refuse const refuse{"WideCharToMultiByte", spared};
        EXPECT_EQ(thrown([&, &room = size] { packTo(L"abc", buffer, room); }), L"WinError: " + told);
        EXPECT_STREQ(buffer, "");
    }
}

// The empty prefix is offered as well, and is not a length that can be converted.
TEST(EncodingInner, PackToFailsWhenNotEvenOneCodePointFits) {
    if (getMBS(L"\u4E2D").size() < 2) GTEST_SKIP() << "one byte a character";
    char buffer[2] = "x";
    EXPECT_THROW(packTo(L"\u4E2D", buffer, 2), WinError);
    EXPECT_STREQ(buffer, "");
}

TEST(EncodingInner, PackToCutsALongTextInFewConversions) {
    faults::Refuse const sparing{"WideCharToMultiByte", 30};
    std::string buffer(400'000, '#');
    EXPECT_EQ(packTo(std::wstring(1'000'000, L'x'), buffer.data(), 400'000), 399'999u);
}

TEST(EncodingInner, LackOfMemoryLeavesNothingBehind) {
    std::wstring const wide(70, L'x');
    std::string const narrow(5000, 'x');
    char buffer[8];
    auto const all = [&] { utf8(narrow), getWCS(narrow), getMBS(wide), packTo(wide, buffer, 8); };
    EXPECT_GE(faults::failEveryAllocation(all), 4);
}

}
