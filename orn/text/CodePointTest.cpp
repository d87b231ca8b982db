#include "orn/text/CodePoint.h"

#include "tests/support/Thrown.h"

#include <gmock/gmock.h>

namespace {

TEST(CodePoint, SurrogatesAreToldByAll32BitsAndOnlyAPairIsCombined) {
    for (unsigned int const value : {0u, 0xD7FFu, 0xE000u, 0x1D800u, 0x8000DC00u}) EXPECT_FALSE(isSurrogate(value));
    for (unsigned int const a : {0xD800u, 0xDBFFu}) EXPECT_TRUE(isSurrogate(a) && isSurrogateA(a) && !isSurrogateB(a));
    for (unsigned int const b : {0xDC00u, 0xDFFFu}) EXPECT_TRUE(isSurrogate(b) && isSurrogateB(b) && !isSurrogateA(b));
    unsigned int out = 7;
    for (auto const& [a, b] : {std::pair{0xDC00u, 0xD800u}, {0xD800u, 0xD800u}, {0xD800u, 0x41u}, {0x1D800u, 0xDC00u}})
        EXPECT_FALSE(fromUTF16(out, a, b));
    EXPECT_EQ(out, 7u);
    EXPECT_TRUE(fromUTF16(out, 0xD83D, 0xDE00) && out == 0x1F600);
    EXPECT_TRUE(fromUTF16(out, 0xDBFF, 0xDFFF) && out == 0x10FFFF);
}

TEST(CodePoint, BothFormsNeedTheirRoom) {
    struct {
        unsigned int value;
        std::wstring units;
        std::string bytes;
    } const cases[] = {
        {0x41, L"A", "A"},
        {0xD800, {0xD800}, "\xED\xA0\x80"},
        {0xFFFF, {0xFFFF}, "\xEF\xBF\xBF"},
        {0x10000, {0xD800, 0xDC00}, "\xF0\x90\x80\x80"},
        {0x10FFFF, {0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
        {0x110000, L"", "\xF4\x90\x80\x80"},
        {0x3FFFFFF, L"", "\xFB\xBF\xBF\xBF\xBF"},
        {0x7FFFFFFF, L"", "\xFD\xBF\xBF\xBF\xBF\xBF"},
        {0x80000000, L"", ""},
    };
    for (auto const& [value, units, bytes] : cases) {
        CodePoint const c = CodePoint::codePoint(value);
        EXPECT_EQ(std::wstring{c}, units) << std::hex << value;
        std::wstring wide = L"??";
        std::string narrow = "??????";
        for (std::size_t room = 0; room < units.size(); ++room) EXPECT_EQ(c.wchars(wide.data(), room), 0u);
        for (std::size_t room = 0; room < bytes.size(); ++room) EXPECT_EQ(c.utf8(narrow.data(), room), 0u);
        EXPECT_TRUE(wide == L"??" && narrow == "??????");
        EXPECT_EQ(c.wchars(wide.data(), units.empty() ? 2 : units.size()), units.size());
        EXPECT_EQ(c.utf8(narrow.data(), bytes.empty() ? 6 : bytes.size()), bytes.size());
        EXPECT_TRUE(wide.starts_with(units) && narrow.starts_with(bytes));
    }
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
    std::pair<std::wstring, std::vector<unsigned int>> const cases[] = {
        {{0x61, 0xD800, 0x62, 0xD800}, {0x61, 0xD800, 0x62, 0xD800}},
        {{0xDC00, 0xD800}, {0xDC00, 0xD800}},
        {{0xD800, 0xD83D, 0xDE00, 0xDE00, 0xDBFF, 0xDFFF, 0}, {0xD800, 0x1F600, 0xDE00, 0x10FFFF, 0}},
    };
    for (auto const& [text, values] : cases) EXPECT_EQ(walk(CodePointEnumerator{text}), values);
    std::wstring const pair{0x61, 0xD83D, 0xDE00};
    EXPECT_THAT(walk({pair.begin(), pair.begin() + 2}), testing::ElementsAre(0x61, 0xD83D));
    EXPECT_THAT(walk({pair.begin() + 2, pair.end()}), testing::ElementsAre(0xDE00));
}

TEST(CodePointEnumerator, TheEndIsNoPlaceToReadOrAdvance) {
    std::wstring const text;
    CodePointEnumerator e{text};
    wchar_t const* const fell = L"logic_error: Fell off the end of a string in CodePointEnumerator::operator";
    EXPECT_EQ(thrown([&] { (void)*e; }), fell + std::wstring{L"*"});
    EXPECT_EQ(thrown([&] { ++e; }), fell + std::wstring{L"++"});
}

}
