#include "orn/platform/SystemLibrary.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

TEST(SystemLibrary, FindsTheSystemsOwnByTheirNames) {
    bool const windows = ORN::LoadSystemLibrary(L"kernel32.dll") != nullptr;
    EXPECT_NE(ORN::LoadSystemLibrary(L"libc.so.6") != nullptr, windows);
    EXPECT_EQ(ORN::LoadProgramLibrary(L"kernel32.dll"), nullptr);
    EXPECT_EQ(ORN::LoadProgramLibrary(L"libc.so.6"), nullptr);
}

TEST(SystemLibrary, WhatLiesBesideTheProgramIsFoundThereOnly) {
    EXPECT_EQ(ORN::LoadSystemLibrary(L"orn-beside.library"), nullptr);
    ASSERT_NE(ORN::LoadProgramLibrary(L"orn-beside.library"), nullptr);
    EXPECT_EQ(ORN::LoadSystemLibrary(L"orn-beside.library"), nullptr);  // nor when it is loaded already
}

TEST(SystemLibrary, WhatALibraryNeedsIsTakenFromBesideItAndNotFromTheWorkingFolder) {
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(ORN_TEST_BESIDE);
    HINSTANCE const lacksIts = ORN::LoadProgramLibrary(L"orn-needy.library");
    std::filesystem::current_path(before);
    EXPECT_EQ(lacksIts, nullptr);
    EXPECT_NE(ORN::LoadProgramLibrary(L"beside/orn-needy.library"), nullptr);
}

TEST(SystemLibrary, NamesLeadIntoTheFolderAndNotOut) {
    for (std::wstring const lead :
         {L"./", L"../bin/", L"..\\bin\\", L"beside/../", L".. /bin/", L".../", L"/../bin/"}) {
        EXPECT_EQ(ORN::LoadProgramLibrary((lead + L"orn-beside.library").c_str()), nullptr) << lead.c_str();
    }
    for (wchar_t const* name : {L"", L".", L"..", L"/", L"orn-nowhere.library", static_cast<wchar_t const*>(nullptr)}) {
        EXPECT_EQ(ORN::LoadProgramLibrary(name), nullptr);
        EXPECT_EQ(ORN::LoadSystemLibrary(name), nullptr);
    }
    EXPECT_NE(ORN::LoadProgramLibrary(L"beside/orn-beside.library"), nullptr);
}

}
