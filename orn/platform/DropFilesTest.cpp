#include "orn/platform/DropFiles.h"

#include "tests/support/DropObject.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::string_literals;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::wstring>;

class DropFiles : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
    void TearDown() override { CoUninitialize(); }

    fs::path put(char const* name) const {
        folder.put(name, "x");
        return root / name;
    }
    fs::path shortcut(char const* name, drop::List const& target) const {
        IShellLinkW* link = nullptr;
        IPersistFile* file = nullptr;
        EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link)), S_OK);
        EXPECT_TRUE(SUCCEEDED(link->SetIDList(target.get())));
        EXPECT_EQ(link->QueryInterface(IID_PPV_ARGS(&file)), S_OK);
        EXPECT_EQ(file->Save((root / name).c_str(), TRUE), S_OK);
        file->Release();
        link->Release();
        return root / name;
    }

    Names dropped() {
        Names files{L"before"};
        getDropFiles(object, nullptr, files);
        EXPECT_TRUE(object.whole());
        EXPECT_EQ(files.front(), L"before");
        files.erase(files.begin());
        return files;
    }

    TemporaryFolder const folder;
    fs::path const root = fs::path{folder.name()}.make_preferred();
    DropObject object;
    unsigned int const items = RegisterClipboardFormatW(L"Shell IDList Array");
};

TEST_F(DropFiles, ItemsOfTheShellGiveTheirPathsAndShortcutsWhatTheyLeadTo) {
    fs::path deep = root;
    for (char const letter : "wxyz"s) fs::create_directory(deep /= std::string(40, letter));
    fs::path const a = put("a b.txt"), b = put("b.txt"), file = deep / "c.dwg";
    fs::rename(put("c.dwg"), file);
    auto const computer = drop::listOf(CSIDL_DRIVES);
    fs::path const leads = shortcut("leads.lnk", drop::listOf(a)), lost = shortcut("lost.lnk", computer),
                   late = shortcut("late.lnk", drop::listOf(b));
    fs::remove(b);
    EXPECT_GT(ILGetSize(drop::listOf(file).get()), 512u);
    object.blocks[items] = drop::itemListArray({drop::listOf(CSIDL_DESKTOP), drop::listOf(a), computer,
                                                drop::listOf(file), drop::listOf(deep), drop::listOf(lost),
                                                drop::listOf(leads), drop::listOf(late), computer});
    object.blocks[CF_HDROP] = drop::fileNames(L"C:\\other\0\0"s);
    EXPECT_EQ(dropped(), (Names{a, file, deep, lost, a, late}));
    EXPECT_EQ(object.delivered, 1);
}

TEST_F(DropFiles, WithoutItemsTheListOfFilesIsRead) {
    EXPECT_EQ(dropped(), Names{});
    object.blocks[CF_HDROP] = {};
    EXPECT_EQ(dropped(), Names{});
    object.blocks[CF_HDROP] = drop::fileNames(L"C:\\a \x20AC.txt\0D:\\b\0\0C:\\c\0"s);
    EXPECT_EQ(dropped(), (Names{L"C:\\a \x20AC.txt", L"D:\\b"}));
    EXPECT_EQ(object.delivered, 2);
    object.blocks[items] = drop::itemListArray({drop::listOf(CSIDL_DESKTOP)});
    EXPECT_EQ(dropped(), Names{});  // no items are items, too
    object.medium = TYMED_GDI;      // not the memory that was asked for
    EXPECT_EQ(dropped(), Names{});
}

TEST_F(DropFiles, WhateverFailsAllIsGivenBack) {
    fs::path const file = put("a.txt");
    object.blocks[items] = drop::itemListArray({drop::listOf(CSIDL_DESKTOP), drop::listOf(file)});
    faults::Case files{"files", [this] { return dropped().size(); }, {{"GetUIObjectOf", L"1"}}, 3};
    for (char const* call : {"GlobalLock", "SHBindToParent", "GetAttributesOf", "GetDisplayNameOf"})
        files.refusals.push_back({call, L"0"});
    faults::expectFailures({files});
    EXPECT_EQ(dropped(), Names{file});
}

}
