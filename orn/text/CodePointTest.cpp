#include "orn/text/CodePoint.h"

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace {

std::string bytesOf(unsigned int value) {
    char buffer[6];
    return {buffer, CodePoint::codePoint(value).utf8(buffer, sizeof buffer)};
}

TEST(CodePoint, SurrogatesAreToldByAll32BitsAndOnlyAPairIsCombined) {
    struct {
        unsigned int value;
        int kind;  // 1 leading, 2 trailing
    } const cases[] = {{0xD7FF, 0}, {0xD800, 1}, {0xDBFF, 1},  {0xDC00, 2},    {0xDFFF, 2},
                       {0xE000, 0}, {0, 0},      {0x1D800, 0}, {0x8000DC00, 0}};
    for (auto const& c : cases) {
        EXPECT_EQ(isSurrogate(c.value), c.kind != 0) << std::hex << c.value;
        EXPECT_EQ(isSurrogateA(c.value), c.kind == 1) << std::hex << c.value;
        EXPECT_EQ(isSurrogateB(c.value), c.kind == 2) << std::hex << c.value;
    }
    unsigned int out = 7;
    for (auto const& [a, b] : {std::pair{0xDC00u, 0xD800u}, {0xD800u, 0xD800u}, {0xD800u, 0x41u}, {0x1D800u, 0xDC00u}})
        EXPECT_FALSE(fromUTF16(out, a, b));
    EXPECT_EQ(out, 7u);
    EXPECT_TRUE(fromUTF16(out, 0xD83D, 0xDE00) && out == 0x1F600);
    EXPECT_TRUE(fromUTF16(out, 0xDBFF, 0xDFFF) && out == 0x10FFFF);
}

TEST(CodePoint, WideFormNeedsItsRoom) {
    wchar_t buffer[2] = {L'x', L'y'};
    CodePoint const face = CodePoint::codePoint(0x1F600);
    EXPECT_EQ(face.wchars(buffer, 1), 0u);
    EXPECT_EQ(CodePoint::codePoint(0x41).wchars(buffer, 0), 0u);
    EXPECT_EQ(CodePoint::codePoint(0x110000).wchars(buffer, 2), 0u);
    EXPECT_EQ(std::wstring(buffer, 2), L"xy");

    EXPECT_EQ(face.wchars(buffer, 2), 2u);
    EXPECT_EQ(std::wstring(buffer, 2), std::wstring({0xD83D, 0xDE00}));
    EXPECT_EQ(CodePoint::codePoint(0xD800).wchars(buffer, 1), 1u);
    EXPECT_EQ(buffer[0], 0xD800);

    EXPECT_EQ(std::wstring{CodePoint::codePoint(0xFFFF)}, std::wstring(1, wchar_t{0xFFFF}));
    EXPECT_EQ(std::wstring{CodePoint::codePoint(0x10FFFF)}, std::wstring({0xDBFF, 0xDFFF}));
    EXPECT_EQ(std::wstring{CodePoint::codePoint(0x110000)}, L"");
}

TEST(CodePoint, NarrowFormHasOneToSixBytes) {
    struct {
        unsigned int value;
        char const* bytes;
    } const cases[] = {
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0xD800, "\xED\xA0\x80"},
        {0xFFFF, "\xEF\xBF\xBF"},
        {0x10000, "\xF0\x90\x80\x80"},
        {0x1F600, "\xF0\x9F\x98\x80"},
        {0x110000, "\xF4\x90\x80\x80"},
        {0x1FFFFF, "\xF7\xBF\xBF\xBF"},
        {0x200000, "\xF8\x88\x80\x80\x80"},
        {0x3FFFFFF, "\xFB\xBF\xBF\xBF\xBF"},
        {0x4000000, "\xFC\x84\x80\x80\x80\x80"},
        {0x7FFFFFFF, "\xFD\xBF\xBF\xBF\xBF\xBF"},
        {0x80000000, ""},
        {0xFFFFFFFF, ""},
    };
    for (auto const& c : cases) {
        std::string const expected = c.bytes;
        EXPECT_EQ(bytesOf(c.value), expected) << std::hex << c.value;
        if (expected.empty()) continue;
        char buffer[6] = {'k', 'e', 'p', 't', '!', '!'};
        EXPECT_EQ(CodePoint::codePoint(c.value).utf8(buffer, expected.size() - 1), 0u);
        EXPECT_EQ(std::string(buffer, 6), "kept!!");
        EXPECT_EQ(CodePoint::codePoint(c.value).utf8(buffer, expected.size()), expected.size());
    }
    EXPECT_EQ(bytesOf(0), std::string(1, '\0'));
}

TEST(CodePoint, LineEnds) {
    for (unsigned int const value : {0x0Au, 0x0Cu, 0x85u, 0x2028u, 0x2029u})
        EXPECT_EQ(CodePoint::codePoint(value).eolCode(), CodePoint::eolNewline) << std::hex << value;
    EXPECT_EQ(CodePoint::codePoint(0x0D).eolCode(), CodePoint::eolReturn);
    for (unsigned int const value : {0u, 0x09u, 0x0Bu, 0x0Eu, 0x84u, 0x2027u, 0x202Au, 0x1000Au})
        EXPECT_EQ(CodePoint::codePoint(value).eolCode(), CodePoint::eolNone) << std::hex << value;
}

std::vector<unsigned int> walk(CodePointEnumerator e) {
    std::vector<unsigned int> values;
    for (; e; ++e) values.push_back((*e).value());
    return values;
}

TEST(CodePointEnumerator, JoinsPairsAndYieldsTheRestAsItIs) {
    using Values = std::vector<unsigned int>;
    struct {
        std::wstring text;
        Values values;
    } const cases[] = {
        {L"", {}},
        {L"ab", {0x61, 0x62}},
        {{0x61, 0xD800, 0x62}, {0x61, 0xD800, 0x62}},
        {{0x61, 0xD800}, {0x61, 0xD800}},
        {{0xDC00}, {0xDC00}},
        {{0xDC00, 0xD800}, {0xDC00, 0xD800}},
        {{0xD800, 0xD83D, 0xDE00, 0xDE00}, {0xD800, 0x1F600, 0xDE00}},
        {{0xDBFF, 0xDFFF, 0}, {0x10FFFF, 0}},
    };
    for (auto const& c : cases) EXPECT_EQ(walk(CodePointEnumerator{c.text}), c.values);

    std::wstring const pair{0x61, 0xD83D, 0xDE00};
    EXPECT_EQ(walk({pair.begin(), pair.begin() + 2}), (Values{0x61, 0xD83D}));
    EXPECT_EQ(walk({pair.begin() + 2, pair.end()}), (Values{0xDE00}));
}

TEST(CodePointEnumerator, TheEndIsNoPlaceToReadOrAdvance) {
    std::wstring const text;
    CodePointEnumerator e{text};
    wchar_t const* const fell = L"logic_error: Fell off the end of a string in CodePointEnumerator::operator";
    EXPECT_EQ(thrown([&] { (void)*e; }), fell + std::wstring{L"*"});
    EXPECT_EQ(thrown([&] { ++e; }), fell + std::wstring{L"++"});
}

}
