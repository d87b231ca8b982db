#include "orn/os/Format.h"

#include <gtest/gtest.h>

#include <string>

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
    EXPECT_EQ(format(buffer, 0, L"%d", 12), ORN::os::formatTooLong);
    EXPECT_EQ(format(buffer, 3, L"%.3f", 0.5), ORN::os::formatTooLong);
    EXPECT_EQ(format(buffer, 3, L"%1000d", 5), ORN::os::formatTooLong);
    EXPECT_EQ(format(buffer, 3, L"abcdef"), ORN::os::formatTooLong);
}

}
