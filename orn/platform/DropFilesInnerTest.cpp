#include "orn/platform/DropFiles.h"

#include "tests/support/DropObject.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(DropFilesInner, WhateverFailsAllIsGivenBack) {
    ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
    TemporaryFolder const folder;
    folder.put("a.txt", "x");
    std::filesystem::path const file = std::filesystem::path{folder / L"a.txt"}.make_preferred();
    auto const list = drop::listOf(file), desktop = drop::listOf(CSIDL_DESKTOP);
    ASSERT_TRUE(list && desktop);
    DropObject object;
    object.blocks[drop::itemLists()] = drop::itemListArray({desktop.get(), list.get()});
    std::vector<std::wstring> const all{file};

    std::vector<std::wstring> files;
    int const failures = faults::failEveryAllocation([&] { getDropFiles(object, nullptr, files); },
                                                     [&](bool failed) {
                                                         EXPECT_TRUE(object.whole());
                                                         EXPECT_TRUE(!failed || files.empty());
                                                     });
    EXPECT_GT(failures, 2);
    EXPECT_EQ(files, all);

    for (char const* call : {"GlobalLock", "SHBindToParent", "GetAttributesOf", "GetDisplayNameOf"}) {
        faults::Refuse const refuse{call};
        files.clear();
        getDropFiles(object, nullptr, files);
        EXPECT_EQ(refuse.refusals(), 1) << call;
        EXPECT_TRUE(files.empty()) << call;
        EXPECT_TRUE(object.whole()) << call;
    }
    faults::Refuse const refuse{"GetUIObjectOf"};
    getDropFiles(object, nullptr, files);
    EXPECT_EQ(files, all);
    CoUninitialize();
}

}
