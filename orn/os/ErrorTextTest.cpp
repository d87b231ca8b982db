#include "orn/os/ErrorText.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(ErrorText, KnownCodesHaveATextAndUnknownOnesLeaveTheArgumentAlone) {
    for (DWORD const code : {2u, 5u, 6u, 87u, 122u, 234u, 0x80004005u}) {
        std::wstring text;
        EXPECT_TRUE(ORN::os::errorText(code, nullptr, text) && !text.empty()) << code;
    }
    for (DWORD const code : {2u, 5u, 6u, 14u, 87u, 112u, 234u}) {  // as COM results, which carry them
        std::wstring own, carried;
        EXPECT_TRUE(ORN::os::errorText(code, nullptr, own) && ORN::os::errorText(0x80070000 | code, nullptr, carried));
        EXPECT_EQ(carried, own);
    }
    std::wstring text = L"kept";
    EXPECT_FALSE(ORN::os::errorText(0x8007FFFF, nullptr, text) || text != L"kept");
    EXPECT_FALSE(ORN::os::errorText(0xDEADBEEF, nullptr, text) || text != L"kept");
}

TEST(ErrorText, TheLastErrorBelongsToItsThread) {
    DWORD first = 0, second = 0;
    ORN::os::setLastError(5);
    EXPECT_EQ(ORN::os::lastError(), 5u);
    std::thread{[&] {
        first = ORN::os::lastError();
        ORN::os::setLastError(6);
        second = ORN::os::lastError();
    }}.join();
    EXPECT_NE(first, 5u);
    EXPECT_EQ(second, 6u);
}

}
