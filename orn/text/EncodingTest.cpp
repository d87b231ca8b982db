#include "orn/text/Encoding.h"

#include "orn/text/CodePoint.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace {

TEST(Encoding, EveryCodePointGoesThroughUtf8AndBack) {
    std::wstring all;
    for (unsigned int value = 0; value <= 0x10FFFF; ++value)
        if (!isSurrogateB(value)) all += std::wstring{CodePoint::codePoint(value)};  // a trailing one could make a pair
    for (unsigned int value = 0xDC00; value <= 0xDFFF; ++value) all += static_cast<wchar_t>(value);
    std::string const bytes = utf8(all);
    EXPECT_EQ(bytes.size(), 0x80u + 2 * 0x780 + 3 * 0xF800 + 4 * 0x100000);
    EXPECT_TRUE(utf8(bytes) == all);
}

TEST(Encoding, LongResultsKeepLittleRoomToSpare) {
    std::string const plain(50000, 'x');
    std::string ideographs;
    for (int i = 0; i < 50000; ++i) ideographs += "\xE4\xB8\xAD";
    for (std::string const& text : {plain, ideographs, plain + ideographs, ideographs + plain}) {
        std::wstring const wide = utf8(text);
        EXPECT_LE(wide.capacity(), 2 * wide.size());
        EXPECT_LE(utf8(wide).capacity(), 2 * text.size());
    }
}

TEST(Encoding, TheCodePageTakesTextsOfEveryLength) {
    for (std::size_t const length : {0u, 1u, 25u, 26u, 63u, 64u, 65u, 128u, 5000u}) {
        std::string const narrow(length, 'x');
        std::wstring const wide(length, L'x');
        EXPECT_EQ(getWCS(narrow) + getWCS(narrow.c_str()), wide + wide);
        EXPECT_EQ(getMBS(wide) + getMBS(wide.c_str()), narrow + narrow);
    }
    EXPECT_EQ(getWCS("a\0b", 3), std::wstring(L"a\0b", 3));
    EXPECT_EQ(getMBS(L"a\0b", 3), std::string("a\0b", 3));
    EXPECT_THROW(getWCS("x", 0x80000000u), std::runtime_error);
    EXPECT_THROW(getMBS(L"x", 0x80000000u), std::runtime_error);
}

TEST(Encoding, ViewsAreTakenAsTheyAre) {
    std::wstring_view const wide = std::wstring_view{L"x\u00E9y"}.substr(1, 1);
    std::string_view const narrow = std::string_view{"-abc-"}.substr(1, 3);
    EXPECT_EQ(utf8(wide) + utf8(L"ab"),
              "\xC3\xA9"
              "ab");
    EXPECT_EQ(utf8(narrow) + getWCS(narrow), L"abcabc");
    EXPECT_EQ(getMBS(wide) + getMBS(L"c"), getMBS(L"\u00E9c"));
    char bytes[4];
    EXPECT_EQ(packTo(std::wstring_view{L"abcde"}.substr(1, 2), bytes, 4), 2u);
    EXPECT_STREQ(bytes, "bc");
}

TEST(Encoding, PackToFillsItsBuffer) {
    char buffer[] = "########";
    for (int const size : {0, -1})
        EXPECT_EQ(thrown([&] { packTo(L"abc", buffer, size); }), L"logic_error: illegal buffer to pack wstring");
    EXPECT_STREQ(buffer, "########");
    for (int const size : {1, 2, 3, 4, 7}) {
        EXPECT_EQ(packTo(L"abc", buffer, size), std::min(3, size - 1));
        EXPECT_EQ(buffer, std::string{"abc"}.substr(0, static_cast<std::size_t>(size) - 1));
    }
    EXPECT_STREQ(buffer + 4, "####");
}

}
