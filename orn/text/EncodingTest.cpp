#include "orn/text/Encoding.h"

#include "orn/text/CodePoint.h"
#include "orn/text/Strings.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <random>

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

TEST(Encoding, Utf8IsReadLeniently) {
    std::pair<std::string, std::wstring> const cases[] = {
        {"\xED\xA0\x80", {0xD800}},
        {"\xC0\x80", {0}},
        {"\x80", {0x80}},
        {"\xE2\x82", {0x2000}},
        {"a\xF0\x9F", {0x61, 0xFFFD}},
        {"\xF4\x90\x80\x80z", {0x7A}},
    };
    for (auto const& [bytes, units] : cases) EXPECT_EQ(utf8(bytes), units) << testing::PrintToString(bytes);
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

// What packTo leaves in a buffer of `size` bytes, and what it throws.
std::string packed(std::wstring const& text, int size, std::wstring& failure) {
    std::string buffer(16, '#');
    std::size_t length = 0;
    failure = thrown([&] { length = packTo(text, buffer.data(), size); });
    EXPECT_EQ(buffer.find_first_not_of('#', static_cast<std::size_t>(size)), std::string::npos);
    EXPECT_EQ(buffer[length], size < 1 ? '#' : '\0');
    return buffer.substr(0, length);
}

TEST(Encoding, PackToCutsWhereACodePointEnds) {
    std::wstring failure;
    for (int size : {0, -1}) {
        packed(L"abc", size, failure);
        EXPECT_EQ(failure, L"logic_error: illegal buffer to pack wstring");
    }
    for (int size : {1, 2, 3, 4, 9}) EXPECT_EQ(packed(L"abc", size, failure), std::string{"abc"}.substr(0, size - 1u));

    // The longest of all beginnings that fit; where not one code point does, its conversion is refused.
    std::mt19937 random{22};
    for (int round = 0; round < 3000; ++round) {
        std::wstring text;
        for (std::size_t length = 1 + random() % 30; length != 0; --length)
            text += std::wstring{CodePoint::codePoint("a\xE9\x7F!"[random() % 4] & 0xFFu)} +
                    std::wstring(random() % 4 == 0, wchar_t{0xD83D}) + std::wstring(random() % 4 == 0, wchar_t{0xDE00});
        int const size = static_cast<int>(2 + random() % 14);
        std::size_t units = text.size();
        auto const splits = [&] { return isSurrogateB(text[units]) && units != 0 && isSurrogateA(text[units - 1]); };
        while (splits() || getMBS(text.substr(0, units)).size() >= static_cast<unsigned>(size)) --units;
        ASSERT_EQ(packed(text, size, failure), getMBS(text.substr(0, units))) << testing::PrintToString(text) << size;
        ASSERT_EQ(failure == L"nothing", units != 0) << testing::PrintToString(text);
    }
}

}
