#include "orn/os/Registry.h"

#include "tests/support/TestRegistry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace os = ORN::os;

namespace {

class Registry : public testing::Test {
protected:
    /// Opens a key below the test's, which is made; tells the status.
    DWORD open(std::wstring const& subKey, DWORD rights, bool create, HKEY& key) {
        std::wstring const path = registry_.path() + subKey;
        return (create ? os::createKey : os::openKey)(registry_.root(), path.c_str(), rights, key);
    }
    HKEY create(std::wstring const& subKey = {}) {
        HKEY key = nullptr;
        EXPECT_EQ(open(subKey, os::registryReadWrite, true, key), 0u);
        return key;
    }
    bool there(std::wstring const& subKey) {
        HKEY key = nullptr;
        return open(subKey, os::registryRead, false, key) == 0 && os::closeKey(key) == 0;
    }
    static std::string bytes(HKEY key, wchar_t const* name) {
        DWORD type = 0, size = 0;
        char data[64];
        size = sizeof data;
        EXPECT_EQ(os::queryValue(key, name, type, data, size), 0u);
        return {data, size};
    }
    static DWORD set(HKEY key, wchar_t const* name, std::string const& data) {
        return os::setValue(key, name, os::typeBinary, data.data(), static_cast<DWORD>(data.size()));
    }

    TestRegistry registry_;
};

TEST_F(Registry, ValuesKeepTheirTypeAndTellTheirSize) {
    HKEY const key = create();
    DWORD type = 0, size = 0;
    char data[8] = "unread";
    EXPECT_EQ(os::queryValue(key, L"none", type, data, size), 2u);
    EXPECT_EQ(os::queryValue(key, L"", type, data, size), 2u);
    for (DWORD const given :
         {os::typeString, os::typeExpandString, os::typeBinary, os::typeDword, os::typeMultiString, DWORD{11}}) {
        ASSERT_EQ(os::setValue(key, L"Value", given, "12345", 5), 0u);
        size = 4;
        EXPECT_EQ(os::queryValue(key, L"Value", type, data, size), os::statusMoreData);
        EXPECT_EQ(size, 5u);
        EXPECT_EQ(os::queryValue(key, L"Value", type, data, size), 0u);
        EXPECT_EQ(type, given);
        EXPECT_EQ((std::string{data, size}), "12345");
    }
    EXPECT_EQ(os::setValue(key, L"", os::typeBinary, nullptr, 0), 0u);
    size = sizeof data;
    EXPECT_EQ(os::queryValue(key, L"", type, data, size), 0u);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(os::deleteValue(key, L""), 0u);
    EXPECT_EQ(os::deleteValue(key, L""), 2u);
    os::closeKey(key);
}

TEST_F(Registry, NamesCompareWithoutCaseUnitByUnit) {
    HKEY const key = create(L"\\\u00C4lter");
    EXPECT_TRUE(there(L"\\\u00E4LTER"));
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
        DWORD type = 0, size = 0;
        ASSERT_EQ(set(key, given, ""), 0u);
        EXPECT_EQ(os::queryValue(key, asked, type, nullptr, size), same ? 0u : 2u) << testing::PrintToString(given);
        EXPECT_EQ(os::deleteValue(key, given), 0u);
    }
    os::closeKey(key);
}

TEST_F(Registry, PathsAreMadeWholeAndGoWithAllThatIsBelow) {
    os::closeKey(create(L"\\a\\b\\c"));
    os::closeKey(create(L"\\a\\d\\"));
    HKEY const a = create(L"\\a"), c = create(L"\\a\\\\b\\c");
    EXPECT_EQ(set(c, L"value", "v"), 0u);
    HKEY below = nullptr;
    EXPECT_EQ(os::openKey(a, L"B\\C", os::registryRead, below), 0u);
    EXPECT_EQ(bytes(below, L"value"), "v");
    EXPECT_EQ(os::deleteTree(a, L"none"), 2u);
    EXPECT_EQ(os::deleteTree(a, L"b"), 0u);
    EXPECT_EQ(os::deleteTree(a, L"b"), 2u);
    EXPECT_FALSE(there(L"\\a\\b"));
    EXPECT_TRUE(there(L"\\a\\d"));

    // What still has the key open is told so, also once there is a new one of the name.
    os::closeKey(create(L"\\a\\b\\c"));
    DWORD type = 0, size = 0;
    HKEY other = nullptr;
    EXPECT_EQ(os::queryValue(c, L"value", type, nullptr, size), 1018u);
    EXPECT_EQ(set(c, L"value", "v"), 1018u);
    EXPECT_EQ(os::deleteValue(c, L"value"), 1018u);
    EXPECT_EQ(os::openKey(c, L"x", os::registryRead, other), 1018u);
    EXPECT_EQ(os::createKey(c, L"x", os::registryReadWrite, other), 1018u);
    for (HKEY const key : {a, c, below}) EXPECT_EQ(os::closeKey(key), 0u);
}

TEST_F(Registry, RefusesWhatHandlesAndNamesDoNotAllow) {
    HKEY const writable = create();
    HKEY readable = nullptr, other = nullptr;
    ASSERT_EQ(open(L"", os::registryRead | 0x100, false, readable), 0u);
    EXPECT_EQ(set(writable, L"v", "1"), 0u);
    EXPECT_EQ(set(readable, L"v", "2"), 5u);
    EXPECT_EQ(os::deleteValue(readable, L"v"), 5u);
    EXPECT_EQ(bytes(readable, L"v"), "1");
    EXPECT_EQ(open(L"\\none", os::registryRead, false, other), 2u);
    EXPECT_EQ(os::openKey(writable, L"\\x", os::registryRead, other), 161u);
    EXPECT_EQ(os::closeKey(readable), 0u);

    for (HKEY const stale : {readable, HKEY{nullptr}, reinterpret_cast<HKEY>(std::uintptr_t{0x123454})}) {
        DWORD type = 0, size = 0;
        EXPECT_EQ(os::openKey(stale, L"x", os::registryRead, other), 6u);
        EXPECT_EQ(os::createKey(stale, L"x", os::registryReadWrite, other), 6u);
        EXPECT_EQ(os::queryValue(stale, L"v", type, nullptr, size), 6u);
        EXPECT_EQ(set(stale, L"v", "3"), 6u);
        EXPECT_EQ(os::deleteValue(stale, L"v"), 6u);
        EXPECT_EQ(os::deleteTree(stale, L"x"), 6u);
        EXPECT_EQ(os::closeKey(stale), 6u);
    }
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(os::closeKey(writable), 0u);
}

TEST_F(Registry, RootsAreThereByThemselves) {
    HKEY key = nullptr;
    ASSERT_EQ(os::openKey(registry_.root(), L"", os::registryReadWrite, key), 0u);
    EXPECT_FALSE(there(L""));
    os::closeKey(create());
    HKEY below = nullptr;
    EXPECT_EQ(os::openKey(key, registry_.path().c_str(), os::registryRead, below), 0u);
    EXPECT_EQ(os::closeKey(below), 0u);
    EXPECT_EQ(os::closeKey(key), 0u);
    EXPECT_EQ(os::closeKey(registry_.root()), 0u);
}

}
