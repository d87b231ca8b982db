#include "orn/text/Encoding.h"

#include "orn/text/CodePoint.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <random>
#include <stdexcept>

namespace {

// The decoder's rules, word for word.
std::wstring decodedByTheRules(std::string const& text) {
    unsigned int const offsets[] = {0, 0x3080, 0xE2080, 0x3C82080, 0xFA082080, 0x82082080};
    std::wstring result;
    for (std::size_t p = 0; p < text.size();) {
        auto const lead = static_cast<unsigned char>(text[p]);
        unsigned int const count = lead < 0xC0   ? 0
                                   : lead < 0xE0 ? 1
                                   : lead < 0xF0 ? 2
                                   : lead < 0xF8 ? 3
                                   : lead < 0xFC ? 4
                                                 : 5;
        if (p + count > text.size()) {
            result += wchar_t{0xFFFD};
            break;
        }
        unsigned int value = 0;
        for (unsigned int i = 0; i <= count; ++i) value = value * 64 + static_cast<unsigned char>(text[p++]);
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
    for (auto const& c : cases) EXPECT_EQ(utf8(c.bytes), c.units) << testing::PrintToString(c.bytes);
}

TEST(Encoding, MalformedBytesAreReadByTheRulesAtEveryLengthAndPlace) {
    std::mt19937 random{20};
    unsigned char const frequent[] = {'a',  0,    0x7F, 0x80, 0xBF, 0xC0, 0xC2, 0xDF,
                                      0xE0, 0xEF, 0xF0, 0xF4, 0xF8, 0xFC, 0xFF};
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % (round % 100 == 0 ? 9000 : 80), 'x');
        unsigned int const plain = random() % 32;  // of 32 bytes so many are ASCII
        for (char& c : text)
            if (random() % 32 >= plain)
                c = static_cast<char>(random() % 2 != 0 ? random() : frequent[random() % std::size(frequent)]);
        ASSERT_EQ(utf8(text), decodedByTheRules(text)) << testing::PrintToString(text);
    }
}

// Long runs without a fault, of one kind of sequence or of several, with an odd sequence here and there.
TEST(Encoding, LongRunsOfSequencesAreReadByTheRules) {
    std::mt19937 random{22};
    unsigned int const limits[] = {0x80, 0x800, 0x10000, 0x100000, 0x110000};
    char const* const odd[] = {"\xC0\x80",
                               "\xC1\xBF",
                               "\xE0\x80\x8A",
                               "\xF0\x80\x80\xBF",
                               "\xF0\x8F\xBF\xBF",
                               "\xED\xA0\x80",
                               "\xF4\x90\x80\x80",
                               "\xF7\xBF\xBF\xBF",
                               "\xF8\x88\x80\x80\x80",
                               "\xE2\x82",
                               "\xC3",
                               "\x80",
                               "\xF0\x9F\x98",
                               "\xFF"};
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        unsigned int const most = limits[random() % 5], often = limits[random() % 5], sparse = 1 + random() % 40;
        unsigned int const faults = random() % 4 == 0 ? 30 : 300;
        for (std::size_t length = random() % 3000; text.size() < length;) {
            char bytes[6];
            unsigned int const value = random() % (random() % sparse == 0 ? most : often);
            text.append(bytes, CodePoint::codePoint(value).utf8(bytes, sizeof bytes));
            if (random() % faults == 0) text += odd[random() % std::size(odd)];
        }
        ASSERT_EQ(utf8(text), decodedByTheRules(text)) << testing::PrintToString(text);
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

// Sequences of one kind or of all, well-formed or nearly so, at every length around what is looked at together.
TEST(Encoding, TextsWithOneFaultAreReadByTheRulesAtEveryLengthAndPlace) {
    std::string const kinds[] = {"a",
                                 "\xC3\xA9",
                                 "\xE4\xB8\xAD",
                                 "\xF0\x9F\x98\x80",
                                 "\xF4\x8F\xBF\xBF",
                                 "\xED\xA0\xBD",
                                 "\xE0\x80\x80",
                                 "\xF0\x80\x80\x80",
                                 "\xF3\xBF\xBF\xBF"};
    unsigned char const faults[] = {0,    'b',  0x7F, 0x80, 0xBF, 0xC0, 0xC1, 0xC2,
                                    0xE0, 0xEF, 0xF0, 0xF4, 0xF5, 0xFC, 0xFF};
    std::mt19937 random{22};
    for (std::size_t length : {0, 60, 1000, 2020})
        for (std::size_t const last = length + 160; length <= last; ++length)
            for (unsigned int mask : {1u, 2u, 3u, 4u, 5u, 8u, 9u, 13u, 0x1Fu, 0x1FFu}) {
                std::string text;
                for (std::size_t i; text.size() < length;)
                    if (i = random() % std::size(kinds), (mask >> i & 1) != 0) text += kinds[i];
                text.resize(length);
                ASSERT_EQ(utf8(text), decodedByTheRules(text)) << testing::PrintToString(text);
                if (text.empty()) continue;
                text[random() % length] = static_cast<char>(faults[random() % std::size(faults)]);
                ASSERT_EQ(utf8(text), decodedByTheRules(text)) << testing::PrintToString(text);
            }
}

std::string encodedByTheRules(std::wstring const& text) {
    std::string result;
    for (CodePointEnumerator e{text}; e; ++e) {
        char bytes[6];
        result.append(bytes, (*e).utf8(bytes, sizeof bytes));
    }
    return result;
}

TEST(Encoding, WideTextsOfEveryMixAreWrittenCodePointByCodePoint) {
    std::mt19937 random{21};
    unsigned int const frequent[] = {0, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF};
    for (int round = 0; round < 5000; ++round) {
        std::wstring text;
        unsigned int const plain = random() % 8, pairs = random() % 8;
        for (std::size_t length = random() % (round % 100 == 0 ? 9000 : 300); text.size() < length;) {
            if (random() % 8 < plain)
                text += static_cast<wchar_t>('a' + random() % 26);
            else if (random() % 8 < pairs)
                text += std::wstring{CodePoint::codePoint(0x10000 + random() % 0x100000)};
            else if (random() % 64 == 0)
                text += static_cast<wchar_t>(0xD800 + random() % 0x800);
            else
                text += static_cast<wchar_t>(frequent[random() % std::size(frequent)]);
        }
        std::string const expected = encodedByTheRules(text);
        ASSERT_EQ(utf8(text), expected);
        ASSERT_EQ(utf8(expected), text);
    }
}

// One wrong unit, or where wchar_t has room for it an element that is no unit, among pairs and letters.
TEST(Encoding, WideTextsWithOneFaultAreWrittenAtEveryLengthAndPlace) {
    unsigned int const faults[] = {0,      'b',    0x7F,   0x80,    0x7FF,   0x800,    0xD800,     0xDBFF,
                                   0xDC00, 0xDFFF, 0xFFFF, 0x10000, 0x1D800, 0x110000, 0x7FFFFFFF, 0xFFFFFFFF};
    std::mt19937 random{23};
    for (std::size_t length : {1, 1000})
        for (std::size_t const last = length + 130; length <= last; ++length)
            for (unsigned int others = 0; others < 8; ++others) {
                std::wstring text;
                while (text.size() < length)
                    text +=
                        std::wstring{CodePoint::codePoint(random() % 8 < others ? 0x4E2D : 0x1F600 + random() % 64)};
                text.resize(length);
                ASSERT_EQ(utf8(text), encodedByTheRules(text)) << length;
                for (int round = 0; round < 4; ++round) {
                    text[random() % length] = static_cast<wchar_t>(faults[random() % std::size(faults)]);
                    ASSERT_EQ(utf8(text), encodedByTheRules(text)) << length;
                }
            }
}

TEST(Encoding, TheCodePageTakesTextsOfEveryLength) {
    for (std::size_t const length : {0u, 1u, 25u, 26u, 63u, 64u, 65u, 128u, 5000u}) {
        std::string narrow(length, 'x');
        std::wstring wide(length, L'x');
        EXPECT_EQ(getWCS(narrow), wide);
        EXPECT_EQ(getWCS(narrow.c_str()), wide);
        EXPECT_EQ(getMBS(wide), narrow);
        EXPECT_EQ(getMBS(wide.c_str()), narrow);
    }
    EXPECT_EQ(getWCS("a\0b", 3), std::wstring(L"a\0b", 3));
    EXPECT_EQ(getMBS(L"a\0b", 3), std::string("a\0b", 3));
    EXPECT_EQ(getWCS("a\0b"), L"a");
    EXPECT_EQ(getMBS(L"a\0b"), "a");
    EXPECT_THROW(getWCS("x", 0x80000000u), std::runtime_error);
    EXPECT_THROW(getMBS(L"x", 0x80000000u), std::runtime_error);
}

// What packTo leaves in a buffer of `size` bytes, or the text of what it throws.
std::string packed(std::wstring const& text, int size) {
    std::string buffer(16, '#');
    try {
        unsigned int const length = packTo(text, buffer.data(), size);
        EXPECT_EQ(length, std::strlen(buffer.c_str()));
    } catch (std::exception const& error) {
        return error.what();
    }
    auto const given = static_cast<std::size_t>(size);
    EXPECT_EQ(buffer.substr(given), std::string(16 - given, '#'));
    return buffer.c_str();
}

TEST(Encoding, PackToCutsWhereACodePointEnds) {
    EXPECT_EQ(packed(L"abc", 0), "illegal buffer to pack wstring");
    EXPECT_EQ(packed(L"", 0), "illegal buffer to pack wstring");
    EXPECT_EQ(packed(L"abc", -1), "illegal buffer to pack wstring");
    EXPECT_EQ(packed(L"abc", 1), "");
    EXPECT_EQ(packed(L"", 4), "");
    EXPECT_EQ(packed(L"abc", 4), "abc");
    EXPECT_EQ(packed(L"abc", 3), "ab");
    EXPECT_EQ(packed(L"abc", 2), "a");
    EXPECT_EQ(packed(std::wstring(100, L'y'), 9), "yyyyyyyy");

    std::wstring const face{0x61, 0xD83D, 0xDE00, 0x62};
    std::string const whole = getMBS(face);
    for (int size = 2; size <= 8; ++size) {
        std::string const cut = packed(face, size);
        std::string const candidates[] = {whole, getMBS(face.substr(0, 3)), getMBS(face.substr(0, 1))};
        for (std::string const& candidate : candidates) {
            if (candidate.size() > static_cast<std::size_t>(size - 1)) continue;
            EXPECT_EQ(cut, candidate) << size;
            break;
        }
    }
}

}
