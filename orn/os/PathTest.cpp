#include "orn/os/Path.h"

#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(Path, FullPathsAreFormedByTheTextAlone) {
    std::wstring const here = std::filesystem::current_path().wstring();
    std::wstring const slash(1, ORN::os::pathSeparator());
    struct {
        wchar_t const *name, *behind;
    } const cases[] = {
        {L"", L""},      {L".", L""},    {L"a", L"|a"},      {L"a/./b", L"|a|b"},         {L"a//b", L"|a|b"},
        {L"a/", L"|a|"}, {L"a/..", L""}, {L"a/../b", L"|b"}, {L"no/such/../f", L"|no|f"}, {L"./a.b", L"|a.b"},
    };
    for (auto const& c : cases) {
        std::wstring expected = here + c.behind;
        for (wchar_t& unit : expected)
            if (unit == L'|') unit = slash[0];
        EXPECT_EQ(ORN::os::fullPath(c.name), expected) << ::testing::PrintToString(c.name);
    }
    std::wstring const root = std::filesystem::current_path().root_path().wstring();
    EXPECT_EQ(ORN::os::fullPath(L"/a/../../.."), root);
    EXPECT_EQ(ORN::os::fullPath(L"/"), root);
}

TEST(Path, WhatHasNoFullPathIsEmpty) {
    EXPECT_EQ(ORN::os::fullPath(std::wstring(1, L'\0')), L"");
    EXPECT_EQ(ORN::os::longPath(std::wstring(L"a\0b", 3)), L"");
    EXPECT_EQ(ORN::os::longPath(L"no such file"), L"");
    for (char const* call : {"_wfullpath", "getcwd"}) {
        faults::Refuse const refuse{call};
        if (ORN::os::fullPath(L"a").empty()) {
            EXPECT_EQ(refuse.refusals(), 1);
            return;
        }
    }
    ADD_FAILURE() << "no refusal reached the system's call";
}

}
