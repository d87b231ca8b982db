#include "orn/platform/RegistryKey.h"

#include "orn/os/Environment.h"
#include "orn/os/Registry.h"
#include "tests/support/Faults.h"
#include "tests/support/TestRegistry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

namespace os = ORN::os;

namespace {

using Strings = std::vector<std::wstring>;

class RegistryKeyInner : public testing::Test {
protected:
    bool set(wchar_t const* name, DWORD type, std::string const& data) const {
        std::string const guarded = data + "!!";  // Windows counts a terminator in that follows a text
        return os::setValue(key_.key(), name, type, guarded.data(), static_cast<DWORD>(data.size())) == 0;
    }
    void set(wchar_t const* name, DWORD type, std::u16string const& text) const {
        EXPECT_TRUE(set(name, type, {reinterpret_cast<char const*>(text.data()), 2 * text.size()}));
    }

    TestRegistry registry_;
    RegWriteKey key_{registry_.root(), registry_.path(), 0};
};

TEST_F(RegistryKeyInner, StringsLoseOneTerminatorAndNoOtherTypeIsOne) {
    std::u16string const full(259, u'x');
    struct {
        DWORD type;
        std::u16string data;
        std::optional<std::wstring> text;
        int queries;
    } const cases[] = {
        {os::typeString, u"", L"", 1},
        {os::typeString, {u"\0", 1}, L"", 1},
        {os::typeString, {u"\0\0", 2}, std::wstring{L'\0'}, 1},
        {os::typeString, u"no end", L"no end", 1},
        {os::typeString, {u"a\0b\0", 4}, std::wstring{L"a\0b", 3}, 1},
        {os::typeString, full.substr(1) + u'\0', std::wstring(258, L'x'), 1},
        {os::typeString, full, std::wstring(259, L'x'), 1},
        {os::typeString, full + u'\0', std::wstring(259, L'x'), 2},
        {os::typeExpandString, u"100%", L"100%", 1},
        {os::typeBinary, u"abc", std::nullopt, 1},
        {os::typeMultiString, u"abc", std::nullopt, 1},
        {0, u"abc", std::nullopt, 1},
    };
    for (auto const& [type, data, text, queries] : cases) {
        set(L"v", type, data);
        std::wstring read = L"before";
        EXPECT_EQ(key_.getString(L"v", read), text.has_value());
        EXPECT_EQ(read, text.value_or(L""));

        for (int const spared : {queries, queries - 1}) {
            faults::Refuse const refuse{"RegQueryValueExW", spared};
            EXPECT_EQ(key_.getString(L"v", read), spared == queries && text.has_value());
        }
        EXPECT_EQ(read, L"");
    }
    set(L"v", os::typeString, std::string{"a\0b", 3});  // half a unit at its end
    std::wstring read;
    EXPECT_TRUE(key_.getString(L"v", read));
    EXPECT_EQ(read, L"a");
}

TEST_F(RegistryKeyInner, ReferencesToTheEnvironmentAreExpandedAtEveryLength) {
    wchar_t whole[4096];
    ASSERT_NE(os::expandEnvironment(L"%PATH%", whole, 4096), 0u);
    std::wstring const path = whole;
    ASSERT_NE(path, L"%PATH%");
    for (std::size_t const length : {0, 200, 258, 259, 260, 261, 600}) {
        std::size_t const filler = length > path.size() ? length - path.size() : 0;
        set(L"v", os::typeExpandString, u"%PATH%" + std::u16string(filler, u'x') + std::u16string(1, u'\0'));
        std::wstring read;
        EXPECT_TRUE(key_.getString(L"v", read));
        EXPECT_EQ(read, path + std::wstring(filler, L'x'));

        faults::Refuse const refuse{"ExpandEnvironmentStringsW"};
        EXPECT_TRUE(key_.getString(L"v", read));
        EXPECT_EQ(read, L"%PATH%" + std::wstring(filler, L'x'));
    }
}

TEST_F(RegistryKeyInner, ListsEndWithTheirDataOrBeforeAnEmptyString) {
    std::u16string const item(258, u'x');
    struct {
        DWORD type;
        std::u16string data;
        std::optional<Strings> texts;
    } const cases[] = {
        {os::typeMultiString, {u"a\0b\0\0", 5}, Strings{L"a", L"b"}},
        {os::typeMultiString, {u"a\0b\0", 4}, Strings{L"a", L"b"}},
        {os::typeMultiString, {u"a\0\0b\0\0", 6}, Strings{L"a"}},
        {os::typeMultiString, {u"\0", 1}, Strings{}},
        {os::typeMultiString, item + u'\0' + u'\0', Strings{std::wstring(258, L'x')}},
        {os::typeMultiString, item + u'x' + u'\0' + u'\0', Strings{std::wstring(259, L'x')}},
        {os::typeMultiString, {u"a\0b", 3}, std::nullopt},
        {os::typeMultiString, u"", std::nullopt},
        {os::typeString, {u"a\0\0", 3}, std::nullopt},
    };
    for (auto const& [type, data, texts] : cases) {
        set(L"v", type, data);
        Strings read{L"v", L"before"};
        EXPECT_EQ(key_.getMultiString(read[0], read), texts.has_value());
        EXPECT_EQ(read, texts.value_or(Strings{}));
    }
}

TEST_F(RegistryKeyInner, NumbersAndBytesAreReadWhenTheyFitAndHaveTheirType) {
    static constexpr struct {
        DWORD type;
        char const* data;
        bool number;
        DWORD bytes;
    } cases[] = {
        {os::typeDword, "\x78\x56\x34\x12", true, 0}, {os::typeDword, "12345678", false, 0},
        {os::typeBinary, "1234", false, 4},           {os::typeBinary, "12345678", false, 8},
        {os::typeBinary, "123456789", false, 0},      {os::typeBinary, "", false, 0},
        {os::typeString, "1234", false, 0},
    };
    for (auto const& [type, data, number, bytes] : cases) {
        ASSERT_TRUE(set(L"v", type, std::string{data}));
        DWORD value = 77;
        char place[9] = "unread..";
        EXPECT_EQ(key_.getDword(L"v", value), number);
        EXPECT_EQ(value, number ? 0x12345678u : 77u);
        EXPECT_EQ(key_.getBinary(L"v", place, 8), bytes) << data;
        EXPECT_EQ((std::string{place, bytes}), (std::string{data, bytes}));
    }
    EXPECT_EQ(key_.getBinary(L"v", nullptr, 8), 0u);
}

}
