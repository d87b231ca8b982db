#include "orn/text/Strings.h"

#include "orn/text/AutoLocale.h"
#include "tests/support/Cases.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <clocale>

namespace {

constexpr Cases tables{"orn/text/StringsTest.txt"};

TEST(Strings, CaseOfTheLocaleKeepsLengthAndEndsAtAZero) {
    for (std::size_t const length : {0u, 1u, 62u, 63u, 64u, 65u, 1000u}) {  // around the scratch buffer
        std::wstring const lower(length, L'x'), upper(length, L'X');
        EXPECT_EQ(uppercase(lower), upper);
        EXPECT_EQ(lowercase(upper), lower);
    }
    EXPECT_EQ(uppercase(std::wstring(L"ab\0cd", 5)), L"AB");
    EXPECT_EQ(uppercase(L"a1-[`{z"), L"A1-[`{Z");
    EXPECT_EQ(lowercase(L"A1-[@{Z"), L"a1-[@{z");

    // A pair stays a pair, whether the system knows its capital or not; a lone surrogate stays.
    AutoLocale const guard{LC_ALL};
    wchar_t const desert[] = {0xD801, 0xDC28, L'a', 0xD801, L'b', 0xDC28, 0xD83D, 0xDE00, 0xD801, 0};
    std::wstring expected = desert;
    expected[2] = L'A';
    expected[4] = L'B';
    std::wstring mapped = uppercase(desert);
    EXPECT_TRUE(mapped[1] == 0xDC28 || mapped[1] == 0xDC00);
    mapped[1] = 0xDC28;
    EXPECT_EQ(mapped, expected);
}

TEST(Strings, SimpleLowercaseIsAscii) {
    for (unsigned int unit = 0; unit < 0x10000; ++unit) {
        wchar_t const expected = static_cast<wchar_t>(unit >= 0x41 && unit <= 0x5A ? unit + 0x20 : unit);
        ASSERT_EQ(simpleLowercase(static_cast<wchar_t>(unit)), expected);
    }
    EXPECT_EQ(simpleLowercase(std::wstring_view{L"ABC"}.substr(1)), L"bc");
    EXPECT_EQ(simpleLowercase(std::wstring(L"AZ@[\0\u00C9Q", 7)), std::wstring(L"az@[\0\u00C9q", 7));
}

TEST(Strings, CollationIsAnOrder) {
    std::wstring faces;  // long enough for the heap, with pairs in it
    for (int n = 0; n < 100; ++n) faces += {0xD83D, 0xDE00};
    std::wstring const texts[] = {L"", L"a", L"ab", L"abc", L"b", L"c", faces + L"a", faces + L"b"};
    for (auto const& a : texts)
        for (auto const& b : texts) {
            int const order = collateStrings(a, b);
            EXPECT_EQ(order <=> 0, a <=> b) << a << " beside " << b;
            EXPECT_EQ(collateStrings(a.c_str(), b.c_str()), order);
        }
    EXPECT_EQ(collateStrings(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)), 0);
}

TEST(Strings, TrimmingKeepsWhatIsInside) {
    for (auto const& [text, trimmed] : tables.of<2>("trimmed")) {
        EXPECT_EQ(trimwhitespace(text), trimmed);
        EXPECT_EQ(trimwhitespace(std::wstring_view{text}), trimmed);
    }
}

TEST(Strings, PackingCutsAsLaidDown) {
    for (auto const& [text, room, units] : tables.of<3>("packed")) {
        std::size_t const size = std::stoul(room), copied = std::stoul(units);
        std::wstring buffer(12, L'#');
        EXPECT_EQ(packTo(text, buffer.data(), size), copied) << size;
        EXPECT_EQ(packTo(std::wstring_view{text}, buffer.data(), size), copied) << size;
        EXPECT_EQ(buffer, text.substr(0, copied) + L'\0' + std::wstring(11 - copied, L'#'));
    }
    wchar_t untouched = L'#';
    EXPECT_EQ(thrown([&] { packTo(L"a", &untouched, std::size_t{0}); }),
              L"logic_error: illegal buffer to pack wstring");
    EXPECT_EQ(untouched, L'#');
}

}
