#include "orn/text/TextLineIterator.h"

#include "tests/support/Cases.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// The lines, a bar behind each.
template <typename I>
auto forwards(I b, I e) {
    std::basic_string<typename std::iterator_traits<I>::value_type> lines;
    for (auto i = TextLineIterator<I>::begin(b, e); i != TextLineIterator<I>::end(b, e); ++i) (lines += *i) += '|';
    return lines;
}

std::string backwards(std::string const& text) {
    using Iterator = TextLineIterator<std::string::const_iterator>;
    std::string lines;
    for (auto i = Iterator::end(text.begin(), text.end()); i != Iterator::begin(text.begin(), text.end());)
        lines.insert(0, *--i + '|');
    return lines;
}

TEST(TextLineIterator, LineEnds) {
    for (auto const& [wide, lines] : Cases{"orn/text/TextLineIteratorTest.txt"}.of<2>("lines")) {
        std::string const text{wide.begin(), wide.end()}, narrow{lines.begin(), lines.end()};
        EXPECT_EQ(forwards(text.data(), text.data() + text.size()), narrow);
        EXPECT_EQ(forwards(text.begin(), text.end()), narrow);
        EXPECT_EQ(forwards(wide.data(), wide.data() + wide.size()), lines);
        EXPECT_EQ(forwards(wide.begin(), wide.end()), lines);
    }
}

// Every text of up to seven of these characters reads the same in both directions, and its lines are what is left of it
// without its line ends.
TEST(TextLineIterator, BothDirectionsAgree) {
    for (int length = 1; length <= 7; ++length)
        for (int number = 0; number < 1 << (2 * length); ++number) {
            std::string text, letters;
            for (int i = 0; i < length; ++i) text += "ab\r\n"[number >> (2 * i) & 3];
            std::string lines = forwards(text.cbegin(), text.cend());
            ASSERT_EQ(backwards(text), lines) << testing::PrintToString(text);
            std::copy_if(text.begin(), text.end(), std::back_inserter(letters), [](char c) { return c >= 'a'; });
            std::erase(lines, '|');
            ASSERT_EQ(lines, letters);
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
