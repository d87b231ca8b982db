#include "orn/platform/RegistryKey.h"

#include "tests/support/TestRegistry.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <type_traits>

using testing::StartsWith;

namespace {

static_assert(std::has_virtual_destructor_v<RegKey> && !std::is_copy_constructible_v<RegWriteKey> &&
              !std::is_constructible_v<RegWriteKey, RegReadKey const&, std::wstring, DWORD>);

class RegistryKey : public testing::Test {
protected:
    std::wstring full(std::wstring const& below) const { return L"HKEY_CURRENT_USER\\" + registry_.path() + below; }

    TestRegistry registry_;
};

TEST_F(RegistryKey, StringsComeBackAtEveryLengthAroundTheShortBuffer) {
    RegWriteKey const key{registry_.root(), registry_.path(), 0};
    ASSERT_TRUE(key.valid());
    for (std::size_t const length : {0, 1, 257, 258, 259, 260, 261, 5000}) {
        std::wstring text(length, L'x'), name = L"nAME";
        if (length > 1) text[1] = L'\0';
        EXPECT_TRUE(key.setString(L"Name", text));
        EXPECT_TRUE(key.getString(name, name)) << length;  // the name may be the place
        EXPECT_EQ(name, text);
    }
}

TEST_F(RegistryKey, AMissingKeyFailsInEverythingAndSaysWhy) {
    RegReadKey missing{registry_.root(), registry_.path() + L"\\none", 0};
    RegReadKey below{missing, L"further", 0};
    EXPECT_FALSE(missing.valid() || below.valid());
    std::wstring const message = missing.errorMessage();
    EXPECT_THAT(message, StartsWith(full(L"\\none") + L"\r\n"));
    EXPECT_GT(message.size(), full(L"\\none").size() + 10);

    std::wstring text = L"before";
    std::vector<std::wstring> texts{L"before"};
    DWORD number = 77, data = 78;
    EXPECT_FALSE(missing.getString(L"name", text));
    EXPECT_FALSE(missing.getMultiString(L"name", texts));
    EXPECT_FALSE(missing.getDword(L"name", number));
    EXPECT_EQ(missing.getBinary(L"name", &data, sizeof data), 0u);
    EXPECT_EQ(text, L"");
    EXPECT_TRUE(texts.empty());
    EXPECT_EQ(number, 77u);
    EXPECT_EQ(data, 78u);
    EXPECT_EQ(missing.errorMessage(), message);
    // Another failure, that of the handle.
    EXPECT_THAT(below.errorMessage(), StartsWith(full(L"\\none\\further\r\n")));
    EXPECT_NE(below.errorMessage().substr(full(L"\\none\\further").size()), message.substr(full(L"\\none").size()));
}

TEST_F(RegistryKey, PathsBeginWithTheRootsNames) {
    static constexpr struct {
        std::int32_t root;
        wchar_t const* path;
    } cases[] = {
        {INT32_MIN, L"HKEY_CLASSES_ROOT\\orn none\\x"},
        {INT32_MIN + 1, L"HKEY_CURRENT_USER\\orn none\\x"},
        {INT32_MIN + 2, L"HKEY_LOCAL_MACHINE\\orn none\\x"},
        {INT32_MIN + 3, L"<?}\\orn none\\x"},
        {0, L"<?}\\orn none\\x"},
    };
    for (auto const& [number, path] : cases) {
        RegReadKey key{reinterpret_cast<HKEY>(std::intptr_t{number}), L"orn none\\x", 0x100};
        EXPECT_FALSE(key.valid());
        EXPECT_THAT(key.errorMessage(), StartsWith(std::wstring{path} + L"\r\n"));
    }
}

TEST_F(RegistryKey, NamesThatCouldMeanAnotherAreRefusedBeforeAnythingIsDone) {
    RegWriteKey key{registry_.root(), registry_.path(), 0};
    RegWriteKey const below{key, L"below", 0};
    ASSERT_TRUE(key.setString(L"n", L"value") && key.setString(L"", L"own") && below.valid());
    std::wstring const cut{L"n\0m", 3}, cutKey{L"below\0m", 7};
    std::wstring text;
    std::vector<std::wstring> texts;
    DWORD number = 0;
    std::function<bool()> const calls[] = {
        [&] { return key.getString(cut, text); },     [&] { return key.getMultiString(cut, texts); },
        [&] { return key.getDword(cut, number); },    [&] { return key.getBinary(cut, &number, 4) != 0; },
        [&] { return key.setString(cut, L"other"); }, [&] { return key.deleteValue(cut); },
        [&] { return key.deleteSubKey(cutKey); },     [&] { return key.deleteSubKey(L""); },
        [&] { return key.deleteSubKey(L"\\"); },      [&] { return key.deleteSubKey(L"\\\\"); },
    };
    for (auto const& call : calls) {
        EXPECT_TRUE(key.getString(L"n", text) && key.status() == 0);
        EXPECT_FALSE(call());
        EXPECT_EQ(key.status(), 87u);
    }
    EXPECT_TRUE(key.getString(L"n", text) && text == L"value" && key.getString(L"", text) && text == L"own");
    EXPECT_FALSE((RegReadKey{key, cutKey, 0}.valid() || RegWriteKey{key, cutKey, 0}.valid()));
    EXPECT_TRUE((RegReadKey{key, L"below", 0}.valid()));
    EXPECT_EQ((RegWriteKey{registry_.root(), registry_.path() + cut, 0}.status()), 87u);
}

TEST_F(RegistryKey, WritingMakesKeysAndDeletingCountsAsDoneWhenNothingIsThere) {
    RegWriteKey key{registry_.root(), registry_.path(), 0};
    ASSERT_TRUE(key.valid());
    EXPECT_EQ(key.errorMessage(), full(L""));
    {
        RegWriteKey below{key, L"a\\b", 0};
        ASSERT_TRUE(below.valid());
        EXPECT_TRUE(below.setString(L"", L"of the key itself"));
        EXPECT_EQ(below.errorMessage(), full(L"\\a\\b"));
    }
    std::wstring text;
    RegReadKey const read{key, L"A\\B", 0};
    EXPECT_TRUE(read.getString(L"", text));
    EXPECT_EQ(text, L"of the key itself");

    EXPECT_TRUE(key.setString(L"name", L"value"));
    EXPECT_TRUE(key.deleteValue(L"NAME"));
    EXPECT_EQ(key.errorMessage(), full(L""));
    EXPECT_TRUE(key.deleteValue(L"name"));
    std::wstring const notFound = RegReadKey{key, L"none", 0}.errorMessage().substr(full(L"\\none").size());
    EXPECT_EQ(key.errorMessage(), full(L"") + notFound);
    EXPECT_TRUE(key.deleteSubKey(L"a"));
    EXPECT_EQ(key.errorMessage(), full(L""));
    EXPECT_TRUE(key.deleteSubKey(L"a"));
    EXPECT_EQ(key.errorMessage(), full(L"") + notFound);
    EXPECT_FALSE((RegReadKey{key, L"a\\b", 0}.valid()));
    EXPECT_FALSE(read.getString(L"", text));
}

}
