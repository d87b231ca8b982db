#include "orn/platform/RegistryKey.h"

#include "orn/os/Environment.h"
#include "orn/os/Registry.h"
#include "tests/support/Faults.h"
#include "tests/support/TestRegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <string>

namespace os = ORN::os;

namespace {

class RegistryKeyInner : public testing::Test {
protected:
    void set(DWORD type, std::u16string const& text) const {
        std::u16string const guarded = text + u'!';  // Windows counts a terminator in that follows a text
        ASSERT_EQ(os::setValue(key_.key(), L"v", type, guarded.data(), static_cast<DWORD>(2 * text.size())), 0u);
    }

    TestRegistry registry_;
    RegWriteKey key_{registry_.root(), registry_.path(), 0};
};

TEST_F(RegistryKeyInner, AStringThatFitsTheShortBufferTakesOneQueryAndLosesOneTerminator) {
    std::u16string const full(259, u'x');
    struct {
        std::u16string data;
        std::wstring text;
        int queries;
    } const cases[] = {
        {u"", L"", 1},
        {{u"\0\0", 2}, std::wstring{L'\0'}, 1},
        {full.substr(1) + u'\0', std::wstring(258, L'x'), 1},
        {full, std::wstring(259, L'x'), 1},
        {full + u'\0', std::wstring(259, L'x'), 2},
    };
    for (auto const& [data, text, queries] : cases) {
        set(os::typeString, data);
        for (int const spared : {queries, queries - 1}) {
            std::wstring read = L"before";
            faults::Refuse const refuse{"RegQueryValueExW", spared};
            EXPECT_EQ(key_.getString(L"v", read), spared == queries);
            EXPECT_EQ(read, spared == queries ? text : L"");
        }
    }
}

TEST_F(RegistryKeyInner, ReferencesToTheEnvironmentAreExpandedAtEveryLength) {
    wchar_t path[4096];
    ASSERT_GT(os::expandEnvironment(L"%PATH%", path, 4096), 10u);
    for (std::size_t const length : {0, 200, 258, 259, 260, 261, 600}) {
        std::size_t const filler = length - std::min(length, std::wcslen(path));
        set(os::typeExpandString, u"%PATH%" + std::u16string(filler, u'x') + std::u16string(1, u'\0'));
        std::wstring read;
        EXPECT_TRUE(key_.getString(L"v", read));
        EXPECT_EQ(read, path + std::wstring(filler, L'x'));
        faults::Refuse const refuse{"ExpandEnvironmentStringsW"};
        EXPECT_TRUE(key_.getString(L"v", read));
        EXPECT_EQ(read, L"%PATH%" + std::wstring(filler, L'x'));
    }
}

}
