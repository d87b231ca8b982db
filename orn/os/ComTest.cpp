#include "orn/os/Com.h"

#include <gtest/gtest.h>

namespace {

TEST(Com, StringsAreCopiesThatTheirMakerTakesBack) {
    wchar_t text[] = L"a description";
    BSTR const copy = ORN::os::allocString(text);
    text[0] = L'x';
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(std::wstring{copy}, L"a description");
    ORN::os::freeString(copy);
    ORN::os::freeString(nullptr);
}

}
