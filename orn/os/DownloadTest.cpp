#include "orn/os/Download.h"

#include <gtest/gtest.h>

namespace {

TEST(Download, WhatIsNoAddressFails) {
    std::wstring file = L"kept";
    for (wchar_t const* url : {L"", L"no scheme", L"zz://h/a.b", L"file:///no/such/file.x"})
        EXPECT_LT(ORN::os::downloadToCache(url, file), 0) << ::testing::PrintToString(url);
    EXPECT_EQ(file, L"kept");
}

}
