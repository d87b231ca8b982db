#include "orn/os/Path.h"

#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

TEST(Path, FullPathsAreFormedByTheTextAlone) {
    std::wstring const here = std::filesystem::current_path().wstring();
    std::pair<wchar_t const*, wchar_t const*> const cases[] = {
        {L"", L""}, {L"a//b/", L"|a|b|"}, {L"a/..", L""}, {L"./no/such/../f.b", L"|no|f.b"}};
    for (auto const& [name, behind] : cases) {
        std::wstring expected = here + behind;
        std::replace(expected.begin(), expected.end(), L'|', static_cast<wchar_t>(ORN::os::pathSeparator()));
        EXPECT_EQ(ORN::os::fullPath(name), expected);
    }
    std::wstring const root = std::filesystem::current_path().root_path().wstring();
    EXPECT_EQ(ORN::os::fullPath(L"/a/../../.."), root);
}

TEST(Path, WhatHasNoFullPathIsEmpty) {
    EXPECT_EQ(ORN::os::fullPath(std::wstring(1, L'\0')), L"");
    EXPECT_EQ(ORN::os::longPath(std::wstring(L"a\0b", 3)), L"");
    EXPECT_EQ(ORN::os::longPath(L"no such file"), L"");
    int refused = 0;
    for (char const* call : {"_wfullpath", "getcwd"}) {  // the one system's, and the other's
        faults::Refuse const refuse{call};
        bool const empty = ORN::os::fullPath(L"a").empty();
        EXPECT_EQ(refuse.refusals(), empty ? 1 : 0);
        refused += refuse.refusals();
    }
    EXPECT_EQ(refused, 1);
}

}
