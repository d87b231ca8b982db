#include "orn/os/Registry.h"

#include "tests/support/TestRegistry.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace os = ORN::os;

namespace {

class Registry : public testing::Test {
protected:
    HKEY create(std::wstring const& subKey = {}) {
        HKEY key = nullptr;
        EXPECT_EQ(os::createKey(registry_.root(), (registry_.path() + subKey).c_str(), os::registryReadWrite, key), 0u);
        return key;
    }
    static DWORD set(HKEY key, wchar_t const* name) { return os::setValue(key, name, os::typeBinary, "", 0); }

    TestRegistry registry_;
};

TEST_F(Registry, NamesCompareWithoutCaseUnitByUnit) {
    HKEY const key = create(L"\\\u00C4lter");
    HKEY other = nullptr;
    EXPECT_EQ(os::openKey(registry_.root(), (registry_.path() + L"\\\u00E4LTER").c_str(), os::registryRead, other), 0u);
    os::closeKey(other);
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
        ASSERT_EQ(set(key, given), 0u);
        EXPECT_EQ(os::queryValue(key, asked, type, nullptr, size), same ? 0u : 2u) << testing::PrintToString(given);
        EXPECT_EQ(os::deleteValue(key, given), 0u);
    }
    os::closeKey(key);
}

TEST_F(Registry, HandlesThatAreClosedOrNoneAndKeysThatAreDeletedAreToldInEveryCall) {
    HKEY const closed = create(L"\\a"), deleted = create(L"\\a\\b\\c");
    EXPECT_EQ(os::closeKey(closed), 0u);
    EXPECT_EQ(os::deleteTree(registry_.root(), (registry_.path() + L"\\a").c_str()), 0u);
    os::closeKey(create(L"\\a\\b\\c"));  // another one of the name
    struct {
        HKEY key;
        DWORD status;
    } const cases[] = {
        {closed, 6}, {nullptr, 6}, {reinterpret_cast<HKEY>(std::uintptr_t{0x123454}), 6}, {deleted, 1018}};
    for (auto const& [key, status] : cases) {
        DWORD type = 0, size = 0;
        HKEY other = nullptr;
        EXPECT_EQ(os::openKey(key, L"x", os::registryRead, other), status);
        EXPECT_EQ(os::createKey(key, L"x", os::registryReadWrite, other), status);
        EXPECT_EQ(os::queryValue(key, L"v", type, nullptr, size), status);
        EXPECT_EQ(set(key, L"v"), status);
        EXPECT_EQ(os::deleteValue(key, L"v"), status);
        EXPECT_TRUE(status == 1018 || os::deleteTree(key, L"x") == status);
        EXPECT_EQ(other, nullptr);
    }
    EXPECT_EQ(os::closeKey(closed), 6u);
    EXPECT_EQ(os::closeKey(deleted), 0u);
}

TEST_F(Registry, WhatAHandleHasNoRightToIsRefusedAndRootsAreThereByThemselves) {
    HKEY readable = nullptr, root = nullptr, other = nullptr;
    os::closeKey(create());
    ASSERT_EQ(os::openKey(registry_.root(), L"", os::registryReadWrite, root), 0u);
    ASSERT_EQ(os::openKey(root, registry_.path().c_str(), os::registryRead | 0x100, readable), 0u);
    EXPECT_EQ(set(readable, L"v"), 5u);
    EXPECT_EQ(os::deleteValue(readable, L"v"), 5u);
    EXPECT_EQ(os::openKey(readable, L"\\x", os::registryRead, other), 161u);
    EXPECT_EQ(os::closeKey(readable), 0u);
    EXPECT_EQ(os::closeKey(root), 0u);
    EXPECT_EQ(os::closeKey(registry_.root()), 0u);
}

}
