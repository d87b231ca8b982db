#include "orn/os/CodePage.h"

#include "orn/os/ErrorText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CodePage, AsciiGoesBothWays) {
    wchar_t units[8];
    ASSERT_EQ(ORN::os::multibyteToWide("abc", 3, units, 8), 3);
    EXPECT_EQ(std::wstring(units, 3), L"abc");
    char bytes[8];
    ASSERT_EQ(ORN::os::wideToMultibyte(L"abc", 3, bytes, 8), 3);
    EXPECT_EQ(std::string(bytes, 3), "abc");
}

}
