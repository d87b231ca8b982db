#include "orn/platform/DropFiles.h"

#include "tests/support/DropObject.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::string_literals;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::wstring>;

Names dropped(DropObject& object) {
    Names files{L"before"};
    getDropFiles(object, nullptr, files);
    EXPECT_TRUE(object.whole());
    EXPECT_EQ(files.front(), L"before");
    files.erase(files.begin());
    return files;
}

class DropFiles : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
    void TearDown() override { CoUninitialize(); }

    fs::path put(char const* name) const {
        folder.put(name, "x");
        return root / name;
    }

    TemporaryFolder const folder;
    fs::path const root = fs::path{folder.name()}.make_preferred();
    DropObject object;
};

TEST_F(DropFiles, ItemsOfTheShellGiveTheirPaths) {
    fs::path const a = put("a.txt"), b = put("b c.dwg"), sub = root / "sub";
    fs::create_directory(sub);
    auto const parent = drop::listOf(root), first = drop::listOf(a), second = drop::listOf(b),
               third = drop::listOf(sub);
    ASSERT_TRUE(parent && first && second && third);
    object.blocks[drop::itemLists()] = drop::itemListArray(
        {parent.get(), ILFindLastID(first.get()), ILFindLastID(second.get()), ILFindLastID(third.get())});
    object.blocks[CF_HDROP] = drop::fileNames(L"C:\\other\0\0"s);
    EXPECT_EQ(dropped(object), (Names{a, b, sub}));
    EXPECT_EQ(object.delivered, 1);
}

TEST_F(DropFiles, ItemsOutsideTheFileSystemArePassedOver) {
    fs::path deep = root;
    for (char const letter : "wxyz"s) fs::create_directory(deep /= std::string(40, letter));
    fs::path const a = put("a.txt");
    fs::rename(a, deep / "a.txt");
    auto const desktop = drop::listOf(CSIDL_DESKTOP), computer = drop::listOf(CSIDL_DRIVES);
    auto const file = drop::listOf(deep / "a.txt");
    ASSERT_TRUE(desktop && computer && file);
    EXPECT_GT(ILGetSize(file.get()), 512u);
    object.blocks[drop::itemLists()] = drop::itemListArray({desktop.get(), computer.get(), file.get(), computer.get()});
    EXPECT_EQ(dropped(object), Names{deep / "a.txt"});
}

TEST_F(DropFiles, AShortcutStandsForWhatItLeadsTo) {
    fs::path const a = put("a.txt"), b = put("b.txt");
    fs::path const leads = root / "leads.lnk", lost = root / "lost.lnk", late = root / "late.lnk";
    auto const save = [](fs::path const& name, ITEMIDLIST const* target) {
        IShellLinkW* link = nullptr;
        ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&link)), S_OK);
        EXPECT_TRUE(SUCCEEDED(link->SetIDList(target)));
        IPersistFile* file = nullptr;
        ASSERT_EQ(link->QueryInterface(IID_PPV_ARGS(&file)), S_OK);
        EXPECT_EQ(file->Save(name.c_str(), TRUE), S_OK);
        file->Release();
        link->Release();
    };
    save(leads, drop::listOf(a).get());
    save(lost, drop::listOf(CSIDL_DRIVES).get());
    save(late, drop::listOf(b).get());
    fs::remove(b);
    auto const parent = drop::listOf(root), first = drop::listOf(leads), second = drop::listOf(lost),
               third = drop::listOf(late);
    ASSERT_TRUE(parent && first && second && third);
    object.blocks[drop::itemLists()] = drop::itemListArray(
        {parent.get(), ILFindLastID(second.get()), ILFindLastID(first.get()), ILFindLastID(third.get())});
    EXPECT_EQ(dropped(object), (Names{lost, a, late}));
}

TEST_F(DropFiles, WithoutItemsTheListOfFilesIsRead) {
    object.blocks[CF_HDROP] = drop::fileNames(L"C:\\a \x20AC.txt\0D:\\b\0\0C:\\c\0"s);
    EXPECT_EQ(dropped(object), (Names{L"C:\\a \x20AC.txt", L"D:\\b"}));
    object.blocks[CF_HDROP] = {};
    EXPECT_EQ(dropped(object), Names{});
    EXPECT_EQ(object.delivered, 2);
}

TEST_F(DropFiles, DataThatIsNotDeliveredLeavesTheFilesAlone) {
    EXPECT_EQ(dropped(object), Names{});
    EXPECT_EQ(object.delivered, 0);
    object.blocks[drop::itemLists()] = drop::itemListArray({drop::listOf(CSIDL_DESKTOP).get()});
    object.blocks[CF_HDROP] = drop::fileNames(L"C:\\a\0\0"s);
    EXPECT_EQ(dropped(object), Names{});  // no items are items, too
    object.medium = TYMED_GDI;            // not the memory that was asked for
    EXPECT_EQ(dropped(object), Names{});
}

}
