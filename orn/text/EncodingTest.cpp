#include "orn/text/Encoding.h"

#include "orn/text/CodePoint.h"

#include <gtest/gtest.h>

#include <random>

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

}
