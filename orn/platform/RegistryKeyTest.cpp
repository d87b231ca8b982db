#include "orn/platform/RegistryKey.h"

#include "orn/foundation/Error.h"
#include "tests/support/TestRegistry.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <iterator>
#include <type_traits>
#include <utility>

using testing::StartsWith;
using testing::UnorderedElementsAreArray;

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

// Each writer's value comes back from its own readers, and from no other.
TEST_F(RegistryKey, ValuesComeBackAsTheTypeThatTheyWereWrittenAs) {
    RegWriteKey const key{RegKey::currentUser(), registry_.path()};
    std::wstring const path = L"<%PATH%>";
    std::vector<std::wstring> const list{L"a", L"b c", std::wstring(300, L'x')};
    std::vector<BYTE> const bytes(700, BYTE{0xA5});
    std::function<bool()> const writers[] = {
        [&] { return key.setString(L"v", path); },
        [&] { return key.setExpandString(L"v", path); },
        [&] { return key.setMultiString(L"v", list); },
        [&] { return key.setMultiString(L"v", {}); },
        [&] { return key.setDword(L"v", 0x89ABCDEF); },
        [&] { return key.setQword(L"v", 0x0123456789ABCDEF); },
        [&] { return key.setBinary(L"v", bytes.data(), bytes.size()); },
        [&] { return key.setBinary(L"v", nullptr, 0); },
        [&] { return key.setValue(L"v", 9, bytes.data(), 3); },
    };
    DWORD const types[] = {1, 2, 7, 7, 4, 11, 3, 3, 9};
    std::size_t const sizes[] = {18, 18, 2 * 308, 2, 4, 8, 700, 0, 3};
    for (std::size_t i = 0; i < std::size(writers); ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(writers[i]());
        std::wstring name = L"v", unexpanded;
        std::vector<std::wstring> strings{L"v", L"before"};
        std::vector<BYTE> binary(1), raw(1);
        DWORD number = 77, type = 77;
        std::uint64_t longNumber = 77;
        EXPECT_EQ(key.getUnexpandedString(L"v", unexpanded), i < 2);
        EXPECT_EQ(unexpanded, i < 2 ? path : L"");
        EXPECT_EQ(key.getString(name, name), i < 2);
        EXPECT_EQ(name == path, i == 0);
        EXPECT_EQ(key.getMultiString(strings[0], strings), i == 2 || i == 3);
        EXPECT_EQ(strings, i == 2 ? list : std::vector<std::wstring>{});
        EXPECT_EQ(key.getDword(L"v", number), i == 4);
        EXPECT_EQ(number, i == 4 ? 0x89ABCDEF : 77);
        EXPECT_EQ(key.getQword(L"v", longNumber), i == 5);
        EXPECT_EQ(longNumber, i == 5 ? 0x0123456789ABCDEF : 77);
        EXPECT_EQ(key.getBinary(L"v", binary), i == 6 || i == 7);
        EXPECT_EQ(binary, i == 6 ? bytes : std::vector<BYTE>{});
        EXPECT_EQ(key.status(), 0u);
        EXPECT_TRUE(key.getValue(L"v", type, raw) && type == types[i] && raw.size() == sizes[i]);
    }
    for (std::wstring const& item : {std::wstring{}, std::wstring{L"a\0b", 3}}) {
        EXPECT_FALSE(key.setMultiString(L"v", {L"a", item}));
        EXPECT_EQ(key.status(), 87u);
    }
    DWORD type = 77;
    std::vector<BYTE> raw(1);
    EXPECT_FALSE(key.getValue(L"none", type, raw));
    EXPECT_TRUE(type == 77 && raw.empty() && key.status() == 2);
}

TEST_F(RegistryKey, TellsWhatIsInItByTheNamesThatOpenIt) {
    RegWriteKey const key{RegKey::currentUser(), registry_.path()};
    using Names = std::vector<std::wstring>;
    Names const names{L"", L"Plain", L"\u00C4lter", std::wstring(1, static_cast<wchar_t>(0xD801)),
                      std::wstring(200, L'x')};
    for (std::wstring const& name : names) {
        EXPECT_TRUE(key.setDword(name, 1));
        EXPECT_TRUE(name.empty() || RegWriteKey(key, name + L"\\below").valid());
    }
    Names subKeys{L"before"}, values{L"before"};
    ASSERT_TRUE(key.getSubKeys(subKeys) && key.getValueNames(values));
    EXPECT_THAT(values, UnorderedElementsAreArray(names));
    EXPECT_THAT(subKeys, UnorderedElementsAreArray(names.begin() + 1, names.end()));
    for (std::wstring const& name : subKeys) EXPECT_TRUE(key.deleteSubKey(name) && key.status() == 0);
    for (std::wstring const& name : values) EXPECT_TRUE(key.deleteValue(name) && key.status() == 0);
    EXPECT_TRUE(key.getSubKeys(subKeys) && key.getValueNames(values) && subKeys.empty() && values.empty());

    RegReadKey const missing{key, L"none"};
    subKeys = values = {L"before"};
    EXPECT_FALSE(missing.getSubKeys(subKeys) || missing.getValueNames(values));
    EXPECT_TRUE(subKeys.empty() && values.empty());
    // A root has something in it or nothing, but it is there.
    EXPECT_TRUE((RegReadKey{RegKey::users(), L""}.getSubKeys(subKeys)));
}

TEST_F(RegistryKey, KeysMoveWithWhatTheyHaveOpen) {
    static_assert(std::is_nothrow_move_assignable_v<RegReadKey> && std::is_nothrow_move_constructible_v<RegWriteKey> &&
                  !std::is_move_constructible_v<RegKey>);
    std::vector<RegWriteKey> keys;
    for (wchar_t const* name : {L"a", L"b", L"c"})
        keys.emplace_back(RegKey::currentUser(), registry_.path() + L"\\" + name);
    for (RegWriteKey const& key : keys) EXPECT_TRUE(key.setDword(L"v", 1));
    keys[0] = std::move(keys[2]);
    EXPECT_FALSE(keys[2].valid() || keys[2].setDword(L"v", 2));
    EXPECT_EQ(keys[2].errorMessage(), L"");
    EXPECT_EQ(keys[0].errorMessage(), full(L"\\c"));
    EXPECT_TRUE(keys[1].deleteSubKey(L"none") && keys[1].status() == 2);
    RegWriteKey const moved{std::move(keys[1])};
    EXPECT_TRUE(moved.valid() && moved.status() == 2 && moved.setDword(L"v", 3) && moved.status() == 0);
}

TEST_F(RegistryKey, AMissingKeyFailsInEverythingAndSaysWhy) {
    RegReadKey missing{registry_.root(), registry_.path() + L"\\none", 0};
    RegReadKey below{missing, L"further", 0};
    std::wstring const message = missing.errorMessage();
    auto const textOf = [](DWORD code) {
        std::wstring const text = formatMessage(code, static_cast<wchar_t const*>(nullptr));
        return text.substr(0, text.find_last_not_of(L' ') + 1);  // the system ends it in its own way
    };
    EXPECT_THAT(message, StartsWith(full(L"\\none\r\n") + textOf(2)));
    EXPECT_THAT(below.errorMessage(), StartsWith(full(L"\\none\\further\r\n") + textOf(6)));
    std::wstring text = L"before";
    std::vector<std::wstring> texts{L"before"};
    DWORD number = 77, data = 78;
    EXPECT_FALSE(missing.valid() || below.valid() || missing.getString(L"name", text) ||
                 missing.getMultiString(L"name", texts) || missing.getDword(L"name", number) ||
                 missing.getBinary(L"name", &data, sizeof data) != 0);
    EXPECT_TRUE(text.empty() && texts.empty() && number == 77 && data == 78);
    EXPECT_EQ(missing.errorMessage(), message);
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
    {
        RegWriteKey below{key, L"a\\b", 0};
        EXPECT_TRUE(below.setString(L"", L"of the key itself"));
        EXPECT_EQ(below.errorMessage(), full(L"\\a\\b"));
    }
    std::wstring text;
    RegReadKey const read{key, L"A\\B", 0};
    EXPECT_TRUE(read.getString(L"", text) && text == L"of the key itself");
    EXPECT_TRUE(key.setString(L"name", L"value"));
    std::wstring const notFound = RegReadKey{key, L"none", 0}.errorMessage().substr(full(L"\\none").size());
    for (auto const& there : {L"", notFound.c_str()}) {
        EXPECT_TRUE(key.deleteValue(L"NAME"));
        EXPECT_EQ(key.errorMessage(), full(L"") + there);
        EXPECT_TRUE(key.deleteSubKey(L"a"));
        EXPECT_EQ(key.errorMessage(), full(L"") + there);
    }
    EXPECT_FALSE((RegReadKey{key, L"a\\b", 0}.valid() || read.getString(L"", text)));
}

}
