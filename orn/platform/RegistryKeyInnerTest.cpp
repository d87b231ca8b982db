#include "orn/platform/RegistryKey.h"

#include "orn/os/Environment.h"
#include "orn/os/Registry.h"
#include "tests/support/Faults.h"
#include "tests/support/TestRegistry.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace os = ORN::os;

namespace {

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

}
