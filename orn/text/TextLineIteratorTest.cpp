#include "orn/text/TextLineIterator.h"

#include <gtest/gtest.h>

#include <algorithm>

using Lines = std::vector<std::string>;

namespace {

template <typename I, typename Text>
std::vector<Text> forwards(I b, I e) {
    std::vector<Text> lines;
    for (auto i = TextLineIterator<I>::begin(b, e); i != TextLineIterator<I>::end(b, e); ++i) lines.push_back(*i);
    return lines;
}

Lines backwards(std::string const& text) {
    using Iterator = TextLineIterator<std::string::const_iterator>;
    Lines lines;
    for (auto i = Iterator::end(text.begin(), text.end()); i != Iterator::begin(text.begin(), text.end());)
        lines.insert(lines.begin(), *--i);
    return lines;
}

TEST(TextLineIterator, LineEnds) {
    std::pair<char const*, Lines> const cases[] = {
        {"", {""}},
        {"a", {"a"}},
        {"a\nb\n", {"a", "b"}},
        {"a\r\n\r\nb", {"a", "", "b"}},
        {"\n", {""}},
        {"x\r\r", {"x"}},
        {"x\r\r\ny", {"x", "y"}},
        {"\n\r", {"", ""}},
        {"\r\n\r", {"", ""}},
        {"\n\nz", {"", "", "z"}},
        {"a\vb\fc\n", {"a\vb\fc"}},
    };
    for (auto const& [narrow, lines] : cases) {
        std::string const text = narrow;
        std::wstring const wide{text.begin(), text.end()};
        std::vector<std::wstring> widened;
        for (auto const& line : lines) widened.emplace_back(line.begin(), line.end());
        EXPECT_EQ((forwards<char const*, std::string>(narrow, narrow + text.size())), lines) << narrow;
        EXPECT_EQ((forwards<std::string::const_iterator, std::string>(text.begin(), text.end())), lines) << narrow;
        EXPECT_EQ((forwards<wchar_t const*, std::wstring>(wide.data(), wide.data() + wide.size())), widened);
        EXPECT_EQ((forwards<std::wstring::const_iterator, std::wstring>(wide.begin(), wide.end())), widened);
    }
}

// Every text of up to seven of these characters reads the same in both directions, and its lines are what is left of it
// without its line ends.
TEST(TextLineIterator, BothDirectionsAgree) {
    for (int length = 1; length <= 7; ++length)
        for (int number = 0; number < 1 << (2 * length); ++number) {
            std::string text, joined, letters;
            for (int i = 0; i < length; ++i) text += "ab\r\n"[number >> (2 * i) & 3];
            Lines const lines = forwards<char const*, std::string>(text.data(), text.data() + text.size());
            ASSERT_EQ(backwards(text), lines) << testing::PrintToString(text);
            for (auto const& line : lines) joined += line;
            std::copy_if(text.begin(), text.end(), std::back_inserter(letters), [](char c) { return c >= 'a'; });
            ASSERT_EQ(joined, letters);
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
