// Keys of the registry, and the registry itself, which is the library's own off Windows.
#include "orn/platform/RegistryKey.h"

#include "orn/foundation/Error.h"
#include "orn/os/Environment.h"
#include "orn/os/Registry.h"
#include "tests/support/Faults.h"
#include "tests/support/TestRegistry.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <functional>
#include <type_traits>
#include <utility>

using namespace std::string_literals;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;
namespace os = ORN::os;

namespace {

static_assert(std::has_virtual_destructor_v<RegKey> && !std::is_copy_constructible_v<RegWriteKey> &&
              !std::is_constructible_v<RegWriteKey, RegReadKey const&, std::wstring, DWORD>);

using Names = std::vector<std::wstring>;

class RegistryKey : public testing::Test {
protected:
    std::wstring full(std::wstring const& below) const { return L"HKEY_CURRENT_USER\\" + registry_.path() + below; }

    TestRegistry registry_;
    RegWriteKey key_{registry_.root(), registry_.path(), 0};
};

TEST_F(RegistryKey, AStringThatFitsTheShortBufferTakesOneQuery) {
    for (std::size_t const length : {0, 1, 257, 258, 259, 260, 261, 5000}) {
        std::wstring text(length, L'x');
        if (length > 1) text[1] = L'\0';
        ASSERT_TRUE(key_.setString(L"Name", text));
        int const queries = length <= 258 ? 1 : 2;
        for (int const spared : {queries, queries - 1}) {
            std::wstring name = L"nAME";
            faults::Refuse const refuse{"RegQueryValueExW", spared};
            EXPECT_EQ(key_.getString(name, name), spared == queries) << length;  // the name may be the place
            EXPECT_EQ(name, spared == queries ? text : L"");
        }
    }
}

TEST_F(RegistryKey, ReferencesToTheEnvironmentAreExpandedAtEveryLength) {
    wchar_t path[4096];
    ASSERT_GT(os::expandEnvironment(L"%PATH%", path, 4096), 10u);
    for (std::size_t const length : {0, 200, 258, 259, 260, 261, 600}) {
        std::wstring const filler(length - std::min(length, std::wcslen(path)), L'x');
        std::wstring read;
        EXPECT_TRUE(key_.setExpandString(L"v", L"%PATH%" + filler) && key_.getString(L"v", read));
        EXPECT_EQ(read, path + filler);
        faults::Refuse const refuse{"ExpandEnvironmentStringsW"};
        EXPECT_TRUE(key_.getString(L"v", read));
        EXPECT_EQ(read, L"%PATH%" + filler);
    }
}

TEST_F(RegistryKey, ValuesAreWrittenWithTheirTypeAndBytes) {
    std::string const longBytes(700, '\xA5');
    struct {
        std::function<bool()> write;
        DWORD type;
        std::string bytes;
    } const values[] = {
        {[&] { return key_.setString(L"v", L"%S\u20AC"); }, 1, "%\0S\0\xAC\x20\0\0"s},
        {[&] { return key_.setExpandString(L"v", L"%S%"); }, 2, "%\0S\0%\0\0\0"s},
        {[&] {
             return key_.setMultiString(L"v", {L"a", L"b c"});
         },
         7, "a\0\0\0b\0 \0c\0\0\0\0\0"s},
        {[&] { return key_.setMultiString(L"v", {}); }, 7, "\0\0"s},
        {[&] { return key_.setDword(L"v", 0x89ABCDEF); }, 4, "\xEF\xCD\xAB\x89"},
        {[&] { return key_.setQword(L"v", 0x0123456789ABCDEF); }, 11, "\xEF\xCD\xAB\x89\x67\x45\x23\x01"},
        {[&] { return key_.setBinary(L"v", longBytes.data(), longBytes.size()); }, 3, longBytes},
        {[&] { return key_.setBinary(L"v", nullptr, 0); }, 3, ""},
        {[&] { return key_.setValue(L"v", 9, "abc", 3); }, 9, "abc"},
    };
    DWORD type = 77;
    std::vector<BYTE> read(1);
    EXPECT_FALSE(key_.getValue(L"v", type, read));
    EXPECT_TRUE(type == 77 && read.empty() && key_.status() == 2);
    for (auto const& [write, expected, bytes] : values) {
        EXPECT_TRUE(write() && key_.status() == 0 && key_.getValue(L"v", type, read) && key_.status() == 0);
        EXPECT_EQ(type, expected);
        EXPECT_EQ(std::string(read.begin(), read.end()), bytes);
    }
    for (std::wstring const& item : {L""s, L"a\0b"s})
        EXPECT_TRUE(!key_.setMultiString(L"v", {L"a", item}) && key_.status() == 87);
}

TEST_F(RegistryKey, TellsWhatIsInItByTheNamesThatOpenIt) {
    Names const names{L"", L"Plain", L"\u00C4lter", std::wstring(1, static_cast<wchar_t>(0xD801)),
                      std::wstring(200, L'x')};
    for (std::wstring const& name : names) {
        EXPECT_TRUE(key_.setDword(name, 1));
        EXPECT_TRUE(name.empty() || RegWriteKey(key_, name + L"\\below").valid());
    }
    Names subKeys{L"before"}, values{L"before"};
    ASSERT_TRUE(key_.getSubKeys(subKeys) && key_.getValueNames(values));
    EXPECT_THAT(values, UnorderedElementsAreArray(names));
    EXPECT_THAT(subKeys, UnorderedElementsAreArray(names.begin() + 1, names.end()));
    for (std::wstring const& name : subKeys) EXPECT_TRUE(key_.deleteSubKey(name) && key_.status() == 0);
    for (std::wstring const& name : values) EXPECT_TRUE(key_.deleteValue(name) && key_.status() == 0);
    EXPECT_TRUE(key_.getSubKeys(subKeys) && key_.getValueNames(values) && subKeys.empty() && values.empty());
    // A root has something in it or nothing, but it is there.
    EXPECT_TRUE((RegReadKey{RegKey::users(), L""}.getSubKeys(subKeys)));
}

TEST_F(RegistryKey, KeysMoveWithWhatTheyHaveOpen) {
    static_assert(std::is_nothrow_move_assignable_v<RegReadKey> && std::is_nothrow_move_constructible_v<RegWriteKey> &&
                  !std::is_move_constructible_v<RegKey>);
    std::vector<RegWriteKey> keys;
    for (wchar_t const* name : {L"a", L"b", L"c"}) keys.emplace_back(key_, name);
    HKEY const closed = keys[0].key();
    keys[0] = std::move(keys[2]);
    EXPECT_EQ(os::closeKey(closed), 6u);
    EXPECT_FALSE(keys[2].valid() || keys[2].setDword(L"v", 2));
    EXPECT_EQ(keys[2].errorMessage(), L"");
    EXPECT_EQ(keys[0].errorMessage(), full(L"\\c"));
    EXPECT_TRUE(keys[1].deleteSubKey(L"none") && keys[1].status() == 2);
    RegWriteKey const moved{std::move(keys[1])};
    EXPECT_TRUE(moved.valid() && moved.status() == 2 && moved.setDword(L"v", 3) && moved.status() == 0);
}

TEST_F(RegistryKey, AMissingKeyFailsInEverythingAndSaysWhy) {
    RegReadKey missing{key_, L"none"}, below{missing, L"further"};
    std::wstring const message = missing.errorMessage();
    auto const textOf = [](DWORD code) {
        std::wstring const text = formatMessage(code, static_cast<wchar_t const*>(nullptr));
        return text.substr(0, text.find_last_not_of(L' ') + 1);  // the system ends it in its own way
    };
    EXPECT_THAT(message, StartsWith(full(L"\\none\r\n") + textOf(2)));
    EXPECT_THAT(below.errorMessage(), StartsWith(full(L"\\none\\further\r\n") + textOf(6)));
    std::wstring text = L"before";
    Names texts{L"before"}, subKeys = texts, values = texts;
    DWORD number = 77, data = 78;
    EXPECT_FALSE(missing.valid() || below.valid() || missing.getString(L"name", text) ||
                 missing.getMultiString(L"name", texts) || missing.getDword(L"name", number) ||
                 missing.getBinary(L"name", &data, sizeof data) != 0 || missing.getSubKeys(subKeys) ||
                 missing.getValueNames(values));
    EXPECT_TRUE(text.empty() && texts.empty() && subKeys.empty() && values.empty() && number == 77 && data == 78);
    EXPECT_EQ(missing.errorMessage(), message);
}

TEST_F(RegistryKey, PathsBeginWithTheRootsNames) {
    wchar_t const* const roots[] = {L"HKEY_CLASSES_ROOT", L"HKEY_CURRENT_USER", L"HKEY_LOCAL_MACHINE", L"<?}"};
    for (std::intptr_t number = INT32_MIN; wchar_t const* root : roots) {
        RegReadKey key{reinterpret_cast<HKEY>(number++), L"orn none\\x", 0x100};
        EXPECT_FALSE(key.valid());
        EXPECT_THAT(key.errorMessage(), StartsWith(root + std::wstring{L"\\orn none\\x\r\n"}));
    }
}

TEST_F(RegistryKey, NamesThatCouldMeanAnotherAreRefusedBeforeAnythingIsDone) {
    RegWriteKey const below{key_, L"below", 0};
    ASSERT_TRUE(key_.setString(L"n", L"value") && key_.setString(L"", L"own") && below.valid());
    std::wstring const cut{L"n\0m", 3}, cutKey{L"below\0m", 7};
    std::wstring text;
    Names texts;
    DWORD number = 0;
    std::function<bool()> const calls[] = {
        [&] { return key_.getString(cut, text); },     [&] { return key_.getMultiString(cut, texts); },
        [&] { return key_.getDword(cut, number); },    [&] { return key_.getBinary(cut, &number, 4) != 0; },
        [&] { return key_.setString(cut, L"other"); }, [&] { return key_.deleteValue(cut); },
        [&] { return key_.deleteSubKey(cutKey); },     [&] { return key_.deleteSubKey(L""); },
        [&] { return key_.deleteSubKey(L"\\"); },      [&] { return key_.deleteSubKey(L"\\\\"); },
    };
    for (auto const& call : calls) {
        EXPECT_TRUE(key_.getString(L"n", text) && key_.status() == 0);
        EXPECT_TRUE(!call() && key_.status() == 87);
    }
    EXPECT_TRUE(key_.getString(L"n", text) && text == L"value" && key_.getString(L"", text) && text == L"own");
    EXPECT_FALSE((RegReadKey{key_, cutKey, 0}.valid() || RegWriteKey{key_, cutKey, 0}.valid()));
    EXPECT_TRUE((RegReadKey{key_, L"below", 0}.valid()));
    EXPECT_EQ((RegWriteKey{registry_.root(), registry_.path() + cut, 0}.status()), 87u);
}

TEST_F(RegistryKey, WritingMakesKeysAndDeletingCountsAsDoneWhenNothingIsThere) {
    EXPECT_EQ((RegWriteKey{key_, L"a\\b"}.errorMessage()), full(L"\\a\\b"));
    RegReadKey const read{key_, L"A\\B", 0};
    EXPECT_TRUE(read.valid() && key_.setString(L"name", L"value"));
    std::wstring const notFound = RegReadKey{key_, L"none", 0}.errorMessage().substr(full(L"\\none").size());
    for (auto const& there : {L"", notFound.c_str()}) {
        EXPECT_TRUE(key_.deleteValue(L"NAME"));
        EXPECT_EQ(key_.errorMessage(), full(L"") + there);
        EXPECT_TRUE(key_.deleteSubKey(L"a"));
        EXPECT_EQ(key_.errorMessage(), full(L"") + there);
    }
    EXPECT_FALSE((RegReadKey{key_, L"a\\b", 0}.valid()));
}

TEST_F(RegistryKey, NamesCompareWithoutCaseUnitByUnit) {
    static constexpr struct {
        wchar_t const *given, *asked;
        bool same;
    } cases[] = {
        {L"plain", L"PLAIN", true},
        {L"\u0451\u0436", L"\u0401\u0416", true},
        {L"\u00FF", L"\u0178", true},
        {L"\u01C6", L"\u01C4", true},
        {L"\u1F80", L"\u1F88", true},
        {L"\u01C5", L"\u01C4", false},  // a title-case letter
        {L"\u0131", L"I", false},
        {L"\u00DF", L"SS", false},
        {L"\u00B5", L"\u039C", false},
        {L"\u03C2", L"\u03A3", false},
        {L"\u0101", L"\u0102", false},
        {L"e\u0301", L"\u00C9", false},
        {L"\xD801\xDC28", L"\xD801\xDC00", false},  // a letter of two units
    };
    for (auto const& [given, asked, same] : cases) {
        ASSERT_TRUE(key_.setDword(given, 1) && RegWriteKey(key_, given).valid());
        DWORD number = 0;
        EXPECT_EQ(key_.getDword(asked, number), same) << testing::PrintToString(given);
        EXPECT_EQ(RegReadKey(key_, asked).valid(), same) << testing::PrintToString(given);
        EXPECT_TRUE(key_.deleteValue(given) && key_.deleteSubKey(given) && key_.status() == 0);
    }
}

TEST_F(RegistryKey, HandlesThatAreClosedOrNoneAndKeysThatAreDeletedAreToldInEveryCall) {
    RegWriteKey const deleted{key_, L"a\\b\\c"};
    ASSERT_TRUE(key_.deleteSubKey(L"a"));
    HKEY const closed = RegWriteKey{key_, L"a\\b\\c"}.key();  // another one of the name
    struct {
        HKEY key;
        DWORD status;
    } const cases[] = {
        {closed, 6}, {nullptr, 6}, {reinterpret_cast<HKEY>(std::uintptr_t{0x123454}), 6}, {deleted.key(), 1018}};
    for (auto const& [key, status] : cases) {
        DWORD type = 0, size = 0;
        HKEY other = nullptr;
        EXPECT_EQ(os::openKey(key, L"x", os::registryRead, other), status);
        EXPECT_EQ(os::createKey(key, L"x", os::registryReadWrite, other), status);
        EXPECT_EQ(os::queryValue(key, L"v", type, nullptr, size), status);
        EXPECT_EQ(os::setValue(key, L"v", os::typeBinary, "", 0), status);
        EXPECT_EQ(os::deleteValue(key, L"v"), status);
        EXPECT_TRUE(status == 1018 || os::deleteTree(key, L"x") == status);
        EXPECT_EQ(other, nullptr);
    }
    EXPECT_EQ(os::closeKey(closed), 6u);
}

TEST_F(RegistryKey, WhatAHandleHasNoRightToIsRefusedAndRootsAreThereByThemselves) {
    RegReadKey const root{registry_.root(), L""}, readable{root, registry_.path(), 0x100};
    ASSERT_TRUE(readable.valid());
    HKEY other = nullptr;
    EXPECT_EQ(os::setValue(readable.key(), L"v", os::typeBinary, "", 0), 5u);
    EXPECT_EQ(os::deleteValue(readable.key(), L"v"), 5u);
    EXPECT_EQ(os::openKey(readable.key(), L"\\x", os::registryRead, other), 161u);
    EXPECT_EQ(os::closeKey(registry_.root()), 0u);
}

}
