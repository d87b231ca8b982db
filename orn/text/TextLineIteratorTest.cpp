#include "orn/text/TextLineIterator.h"

#include <gtest/gtest.h>

#include <algorithm>

using Lines = std::vector<std::string>;

namespace {

template <typename I>
std::vector<typename TextLineIterator<I>::value_type> linesOf(I b, I e) {
    std::vector<typename TextLineIterator<I>::value_type> lines;
    auto const end = TextLineIterator<I>::end(b, e);
    for (auto i = TextLineIterator<I>::begin(b, e); i != end; ++i) lines.push_back(*i);
    return lines;
}

// One text, over all four iterator types.
Lines linesOf(std::string const& text) {
    std::wstring const wide{text.begin(), text.end()};
    Lines const lines = linesOf<char const*>(text.data(), text.data() + text.size());
    EXPECT_EQ(linesOf(text.begin(), text.end()), lines);
    std::vector<std::wstring> widened;
    for (auto const& line : lines) widened.emplace_back(line.begin(), line.end());
    EXPECT_EQ(linesOf<wchar_t const*>(wide.data(), wide.data() + wide.size()), widened);
    EXPECT_EQ(linesOf(wide.begin(), wide.end()), widened);
    return lines;
}

Lines backwards(std::string const& text) {
    using Iterator = TextLineIterator<std::string::const_iterator>;
    Lines lines;
    for (auto i = Iterator::end(text.begin(), text.end()); i != Iterator::begin(text.begin(), text.end());) {
        lines.push_back(*--i);
    }
    std::reverse(lines.begin(), lines.end());
    return lines;
}

TEST(TextLineIterator, LineEnds) {
    struct {
        char const* text;
        Lines lines;
    } const cases[] = {
        {"", {""}},
        {"a", {"a"}},
        {"a\nb", {"a", "b"}},
        {"a\nb\n", {"a", "b"}},
        {"a\r\n\r\nb", {"a", "", "b"}},
        {"\n", {""}},
        {"x\r", {"x"}},
        {"x\r\r", {"x"}},
        {"x\r\r\ny", {"x", "y"}},
        {"\n\r", {"", ""}},
        {"\r\n\r", {"", ""}},
        {"\n\nz", {"", "", "z"}},
        {"a\vb\fc\n", {"a\vb\fc"}},
    };
    for (auto const& [text, lines] : cases) {
        EXPECT_EQ(linesOf(text), lines) << testing::PrintToString(text);
        if (*text != '\0') {
            EXPECT_EQ(backwards(text), lines) << testing::PrintToString(text);
        }
    }
}

// Every text of up to seven of these characters reads the same in both directions, and its lines are what is left of it
// without its line ends.
TEST(TextLineIterator, BothDirectionsAgree) {
    for (int length = 1; length <= 7; ++length) {
        int const texts = 1 << (2 * length);
        for (int number = 0; number < texts; ++number) {
            std::string text;
            for (int i = 0; i < length; ++i) text += "ab\r\n"[number >> (2 * i) & 3];
            Lines const lines = linesOf<char const*>(text.data(), text.data() + text.size());
            ASSERT_EQ(backwards(text), lines) << testing::PrintToString(text);
            std::string joined, letters;
            for (auto const& line : lines) joined += line;
            std::copy_if(text.begin(), text.end(), std::back_inserter(letters), [](char c) { return c >= 'a'; });
            ASSERT_EQ(joined, letters);
        }
    }
}

TEST(TextLineIterator, EndsAndEquality) {
    using Iterator = TextLineIterator<char const*>;
    char const* const text = "one\ntwo";
    char const* const end = text + 7;

    auto empty = Iterator::begin(end, end);
    EXPECT_NE(empty, Iterator::end(end, end));  // same line begin, other flag
    EXPECT_EQ(++empty, Iterator::end(end, end));

    auto i = Iterator::begin(text, end);
    EXPECT_EQ(*i++, "one");
    EXPECT_EQ(*i, "two");
    EXPECT_EQ(*i--, "two");
    EXPECT_EQ(i, Iterator::begin(text, end));
    --i;
    EXPECT_EQ(*i, "");
    EXPECT_NE(i, Iterator::end(text, end));
    EXPECT_EQ(*++i, "one");
    EXPECT_EQ(Iterator{}, Iterator{});
    static_assert(std::bidirectional_iterator<Iterator>);
}

}
