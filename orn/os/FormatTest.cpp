#include "orn/os/Format.h"

#include "orn/os/CodePage.h"

#include <gtest/gtest.h>

namespace {

int format(wchar_t* buffer, std::size_t size, wchar_t const* text, ...) {
    std::va_list arguments;
    va_start(arguments, text);
    int const length = ORN::os::formatWide(buffer, size, text, arguments);
    va_end(arguments);
    return length;
}

TEST(Format, LengthIsTheAnswerUntilTheRoomEnds) {
    wchar_t buffer[8];
    EXPECT_EQ(format(buffer, 8, L"%d-%s", 12, L"abc"), 6);
    EXPECT_EQ(std::wstring(buffer), L"12-abc");
    EXPECT_EQ(format(buffer, 5, L"%d-%s", 12, L"abc"), ORN::os::formatTooLong);
    EXPECT_EQ(format(buffer, 7, L"%d-%s", 12, L"abc"), 6);
    for (wchar_t const* text : {L"%.3f", L"%1000.0f", L"abcdef"})
        EXPECT_EQ(format(buffer, 3, text, 0.5), ORN::os::formatTooLong) << text;
}

TEST(Format, NarrowTextsAreReadInTheCodePage) {
    if constexpr (sizeof(wchar_t) == 2) GTEST_SKIP() << "the runtime's own business";
    char const text[] = "\xC3\xA9-\xF0\x9F\x98\x80-\xC3-\xFF";
    wchar_t expected[40] = {}, formatted[40];
    int const length = ORN::os::multibyteToWide(text, sizeof text - 1, expected, 40);
    ASSERT_GT(length, 0);
    EXPECT_EQ(format(formatted, 40, L"%hs", text), length);
    EXPECT_EQ(std::wstring(formatted), expected);
    EXPECT_EQ(format(formatted, 40, L"[%3.1hs]", text), 5);
    EXPECT_EQ(std::wstring(formatted), std::wstring(L"[  ") + expected[0] + L"]");

    char const unterminated[] = {'a', 'b', 'c'};
    EXPECT_EQ(format(formatted, 40, L"%.3hs", unterminated), 3);
    EXPECT_EQ(std::wstring(formatted), L"abc");
    wchar_t const wide[] = {L'a', L'b', L'c'};
    EXPECT_EQ(format(formatted, 40, L"%.3s", wide), 3);
    EXPECT_EQ(std::wstring(formatted), L"abc");
}

}
