#include "orn/text/Encoding.h"

#include "orn/text/CodePoint.h"
#include "orn/text/Strings.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

namespace {

// The decoder's rules, word for word.
std::wstring decodedByTheRules(std::string const& text) {
    unsigned int const offsets[] = {0, 0x3080, 0xE2080, 0x3C82080, 0xFA082080, 0x82082080};
    unsigned char const leads[] = {0xC0, 0xE0, 0xF0, 0xF8, 0xFC};
    std::wstring result;
    for (std::size_t p = 0; p < text.size();) {
        std::size_t count = 0;
        for (unsigned char const lead : leads) count += static_cast<unsigned char>(text[p]) >= lead;
        if (p + count > text.size()) return result + wchar_t{0xFFFD};
        unsigned int value = 0;
        for (std::size_t i = 0; i <= count; ++i) value = value * 64 + static_cast<unsigned char>(text[p++]);
        value -= offsets[count];
        if (value <= 0xFFFF) {
            result += static_cast<wchar_t>(value);
        } else if (value <= 0x10FFFF) {
            result += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
            result += static_cast<wchar_t>(0xDC00 + (value & 0x3FF));
        }
    }
    return result;
}

std::string encodedByTheRules(std::wstring const& text) {
    std::string result;
    for (CodePointEnumerator e{text}; e; ++e) {
        char bytes[6];
        result.append(bytes, (*e).utf8(bytes, sizeof bytes));
    }
    return result;
}

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
    struct {
        std::string bytes;
        std::wstring units;
    } const cases[] = {
        {"", L""},
        {"\xED\xA0\x80", {0xD800}},
        {"\xC0\x80", {0}},
        {"\x80", {0x80}},
        {"\xE2\x82", {0x2000}},
        {"\xE2", {0xFFFD}},
        {"a\xF0\x9F", {0x61, 0xFFFD}},
        {"\xF4\x90\x80\x80z", {0x7A}},
        {"\xF0\x9F\x98\x80", {0xD83D, 0xDE00}},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(utf8(c.bytes), c.units) << testing::PrintToString(c.bytes);
        EXPECT_EQ(decodedByTheRules(c.bytes), c.units) << testing::PrintToString(c.bytes);
    }
}

// Sequences of one length or of several, cut anywhere, with odd ones among them often, seldom, once or never; as long as
// what is looked at together, and a little more.
TEST(Encoding, BytesAreReadByTheRulesAtEveryLengthAndPlace) {
    std::mt19937 random{20};
    unsigned int const limits[] = {0x80, 0x800, 0x10000, 0x100000, 0x110000};
    std::string const odd[] = {{0},
                               "\xC0\x80",
                               "\xC1\xBF",
                               "\xE0\x80\x8A",
                               "\xF0\x80\x80\xBF",
                               "\xF0\x8F\xBF\xBF",
                               "\xED\xA0\xBD",
                               "\xF4\x90\x80\x80",
                               "\xF7\xBF\xBF\xBF",
                               "\xF8\x88\x80\x80\x80",
                               "\xFC\x84\x80\x80\x80\x80",
                               "\xE2\x82",
                               "\xC3",
                               "\x80",
                               "\xF0\x9F\x98",
                               "\xFF"};
    for (int round = 0; round < 30000; ++round) {
        std::size_t const lengths[] = {0, 60, 1000, 2020, round % 100 == 0 ? 9000u : 0u};
        std::size_t const length = lengths[random() % 5] + random() % 160;
        unsigned int const most = limits[random() % 5], often = limits[random() % 5], sparse = 1 + random() % 40;
        unsigned int const faults[] = {1, 2, 30, 300, 0xFFFFFFFF}, fault = faults[random() % 5];
        std::string text;
        while (text.size() < length) {
            char bytes[6];
            unsigned int const value = random() % (random() % sparse == 0 ? most : often);
            text.append(bytes, CodePoint::codePoint(value).utf8(bytes, sizeof bytes));
            if (random() % fault == 0) text += odd[random() % std::size(odd)];
            if (random() % fault == 0) text += static_cast<char>(random());
        }
        text.resize(length);
        if (length != 0 && round % 2 == 0) text[random() % length] = odd[random() % std::size(odd)][0];
        ASSERT_EQ(utf8(text), decodedByTheRules(text)) << testing::PrintToString(text);
    }
}

// Likewise, with lone surrogates and, where wchar_t has room for it, elements that are no unit.
TEST(Encoding, WideTextsAreWrittenByCodePointsAtEveryLengthAndPlace) {
    unsigned int const odd[] = {0,      0x7F,   0x80,   0x7FF,   0x800,   0xD7FF,   0xD800,     0xDBFF,    0xDC00,
                                0xDFFF, 0xE000, 0xFFFF, 0x10000, 0x1D800, 0x110000, 0x7FFFFFFF, 0xFFFFFFFF};
    std::mt19937 random{21};
    for (int round = 0; round < 12000; ++round) {
        std::size_t const lengths[] = {0, 1000, round % 100 == 0 ? 9000u : 0u},
                          length = lengths[random() % 3] + random() % 200;
        unsigned int const plain = random() % 9, pairs = random() % 9, fault = round % 3 == 0 ? 64 : 0xFFFFFFFF;
        std::wstring text;
        while (text.size() < length) {
            unsigned int const value = random() % 8 < plain   ? 'a' + random() % 26
                                       : random() % 8 < pairs ? 0x10000 + random() % 0x100000
                                                              : 0x80 + random() % 0xD780;
            text += std::wstring{CodePoint::codePoint(value)};
            if (random() % fault == 0) text += static_cast<wchar_t>(odd[random() % std::size(odd)]);
        }
        text.resize(length);
        if (length != 0 && round % 2 == 0)
            text[random() % length] = static_cast<wchar_t>(odd[random() % std::size(odd)]);
        ASSERT_EQ(utf8(text), encodedByTheRules(text)) << length;
    }
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

// What packTo leaves in a buffer of `size` bytes.
std::string packed(std::wstring const& text, int size) {
    std::string buffer(16, '#');
    std::size_t const length = packTo(text, buffer.data(), size);
    EXPECT_EQ(buffer[length], '\0');
    EXPECT_EQ(buffer.find_first_not_of('#', static_cast<std::size_t>(size)), std::string::npos);
    return buffer.substr(0, length);
}

TEST(Encoding, ViewsAreTakenAsTheyAre) {
    std::wstring_view const wide = std::wstring_view{L"x\u00E9y"}.substr(1, 1);
    std::string_view const narrow = std::string_view{"-abc-"}.substr(1, 3);
    EXPECT_EQ(utf8(wide), "\xC3\xA9");
    EXPECT_EQ(utf8(narrow) + getWCS(narrow), L"abcabc");
    EXPECT_EQ(getMBS(wide), getMBS(L"\u00E9"));
    EXPECT_EQ(utf8(L"ab") + getMBS(L"c"), "abc");  // literals mean what they did
    char bytes[4];
    wchar_t units[4];
    EXPECT_EQ(packTo(std::wstring_view{L"abcde"}.substr(1, 2), bytes, 4), 2u);
    EXPECT_EQ(packTo(std::wstring_view{L"abcde"}.substr(1, 2), units, 4), 2u);
    EXPECT_TRUE(std::string{bytes} == "bc" && std::wstring{units} == L"bc");
    EXPECT_EQ(trimwhitespace(std::wstring_view{L"x  a b x"}.substr(1, 6)), L"a b");
    EXPECT_EQ(simpleLowercase(std::wstring_view{L"ABC"}.substr(1)), L"bc");
}

TEST(Encoding, PackToCutsWhereACodePointEnds) {
    for (int size : {0, -1})
        EXPECT_EQ(thrown([=] { packed(L"abc", size); }), L"logic_error: illegal buffer to pack wstring");
    for (int size : {1, 2, 3, 4, 9}) EXPECT_EQ(packed(L"abc", size), std::string{"abc"}.substr(0, size - 1u));
    EXPECT_EQ(packed(std::wstring(100, L'y'), 9), "yyyyyyyy");

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
        if (units != 0) {
            ASSERT_EQ(packed(text, size), getMBS(text.substr(0, units))) << testing::PrintToString(text) << size;
        } else {
            ASSERT_NE(thrown([&] { packed(text, size); }), L"nothing") << testing::PrintToString(text);
        }
    }
}

}
