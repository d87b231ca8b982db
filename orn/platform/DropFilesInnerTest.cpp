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
    auto const dropped = [&] {
        std::vector<std::wstring> files;
        getDropFiles(object, nullptr, files);
        EXPECT_TRUE(object.whole());
        EXPECT_TRUE(files.empty() || files == std::vector<std::wstring>{file});
        return files.size();
    };
    faults::Case files{"files", dropped, {{"GetUIObjectOf", L"1"}}, 3};
    for (char const* call : {"GlobalLock", "SHBindToParent", "GetAttributesOf", "GetDisplayNameOf"})
        files.refusals.push_back({call, L"0"});
    faults::expectFailures({files});
    CoUninitialize();
}

}
