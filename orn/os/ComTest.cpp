#include "orn/os/Com.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(Com, StringsAreCopiesThatTheirMakerTakesBack) {
    std::wstring text{L"a description\0 of two parts", 27};
    BSTR const copy = ORN::os::allocString(text);
    std::wstring const given = std::exchange(text, L"");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ((std::wstring{copy, ORN::os::stringLength(copy)}), given);
    EXPECT_EQ(copy[27], L'\0');
    ORN::os::freeString(copy);
    EXPECT_EQ(ORN::os::stringLength(nullptr), 0u);
    ORN::os::freeString(nullptr);
}

}
