#include "orn/os/CodePage.h"

#include "orn/os/ErrorText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace {

namespace os = ORN::os;

std::wstring wide(std::string const& bytes, int room = 64) {
    std::vector<wchar_t> units(static_cast<std::size_t>(room));
    return {units.data(), static_cast<std::size_t>(
                              os::multibyteToWide(bytes.data(), static_cast<int>(bytes.size()), units.data(), room))};
}

std::string narrow(std::wstring const& units, int room = 64) {
    std::vector<char> bytes(static_cast<std::size_t>(room));
    return {bytes.data(), static_cast<std::size_t>(
                              os::wideToMultibyte(units.data(), static_cast<int>(units.size()), bytes.data(), room))};
}

// The bytes, with a '*' behind them when something was put in a character's place.
std::string strictly(std::wstring const& units) {
    char bytes[64];
    bool substituted = false;
    int const count = os::wideToMultibyteStrictly(units.data(), static_cast<int>(units.size()), bytes, 64, substituted);
    return std::string(bytes, static_cast<std::size_t>(count)) + (substituted ? "*" : "");
}

struct Decoded {
    int size;
    unsigned int codePoint;
    bool operator==(Decoded const&) const = default;
};
Decoded decoded(std::string const& bytes) {
    Decoded result{0, 0xABCDEF};
    result.size = os::decodeMultibyte(bytes.data(), static_cast<int>(bytes.size()), result.codePoint);
    return result;
}

TEST(CodePage, WhatItHoldsStrictlyItGivesBack) {
    int held = 0;
    for (wchar_t unit = 0x20; unit < 0xFFFE; ++unit) {
        if (unit >= 0xD800 && unit <= 0xDFFF) continue;
        std::string const bytes = strictly({unit});
        if (bytes.empty() || (bytes.size() > 1 && bytes.back() == '*')) continue;
        ++held;
        ASSERT_EQ(wide(bytes), std::wstring{unit}) << std::hex << unsigned{static_cast<unsigned short>(unit)};
        ASSERT_EQ(decoded(bytes + bytes), (Decoded{static_cast<int>(bytes.size()), static_cast<unsigned short>(unit)}));
    }
    EXPECT_GE(held, 95);
}

TEST(CodePage, NoRoomAndNoLengthAreToldApart) {
    DWORD const invalidParameter = 87, insufficientBuffer = 122;
    auto const errorOf = [](auto call) {
        os::setLastError(0);
        EXPECT_EQ(call(), 0);
        return os::lastError();
    };
    char bytes[4];
    wchar_t units[4];
    bool substituted;
    EXPECT_EQ(errorOf([&] { return os::wideToMultibyte(L"abcde", 5, bytes, 4); }), insufficientBuffer);
    EXPECT_EQ(errorOf([&] { return os::wideToMultibyteStrictly(L"abcde", 5, bytes, 4, substituted); }),
              insufficientBuffer);
    EXPECT_EQ(errorOf([&] { return os::multibyteToWide("abcde", 5, units, 4); }), insufficientBuffer);
    EXPECT_EQ(errorOf([&] { return os::wideToMultibyte(L"", 0, bytes, 4); }), invalidParameter);
    EXPECT_EQ(errorOf([&] { return os::wideToMultibyte(L"a", 1, bytes, 0); }), invalidParameter);
    EXPECT_EQ(errorOf([&] { return os::multibyteToWide("", 0, units, 4); }), invalidParameter);
    EXPECT_EQ(narrow(L"abcd", 4), "abcd");
    EXPECT_EQ(wide("abcd", 4), L"abcd");
}

TEST(CodePage, OneCharacterIsDecodedAtATime) {
    EXPECT_EQ(decoded("ab"), (Decoded{1, 'a'}));
    EXPECT_EQ(decoded(std::string("\0a", 2)), (Decoded{0, 0}));
    EXPECT_EQ(decoded(""), (Decoded{-1, 0xABCDEF}));
}

TEST(CodePage, ThreadsDoNotDisturbEachOther) {
    std::wstring const text = L"caf\u00E9 \u4E2D\u6587 z";
    std::string const expected = narrow(text);
    std::atomic<int> wrong{0};
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                for (int round = 0; round < 500; ++round) wrong += narrow(text) != expected || wide("abc") != L"abc";
            });
    }
    EXPECT_EQ(wrong, 0);
}

// What holds in one code page only, run in that one by name.
bool runsIn(char const* page) {
    char const* const named = std::getenv("ORN_TEST_CODE_PAGE");
    return named != nullptr && std::string{named} == page;
}

TEST(CodePage, InUtf8) {
    if (!runsIn("UTF-8")) GTEST_SKIP() << "not this code page";
    std::wstring const text = {0x61, 0xE9, 0x4E2D, 0xD83D, 0xDE00, 0x7A};
    std::string const bytes = "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80z";
    EXPECT_EQ(wide(bytes), text);
    EXPECT_EQ(strictly(text), bytes);
    EXPECT_EQ(strictly({0x61, 0xD83D}), "a\xEF\xBF\xBD*");
    EXPECT_EQ(narrow({0xDE00, 0x62}),
              "\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(decoded("\xF0\x9F\x98\x80z"), (Decoded{4, 0x1F600}));
    EXPECT_EQ(narrow({0xD83D, 0xDE00}, 3), "");

    // One replacement for the longest head of a sequence (Unicode 15, table 3-8), and none of them is a character.
    struct {
        std::string bytes;
        int replacements;
    } const malformed[] = {
        {"\x80", 1},         {"\xC0\xAF", 2},         {"\xE0\x80\x80", 3}, {"\xED\xA0\x80", 3}, {"\xE1\x80", 1},
        {"\xF0\x91\x92", 1}, {"\xF4\x90\x80\x80", 4}, {"\xF5\x80", 2},     {"\xF1\xBF\xFF", 2}, {"\xC2", 1},
        {"\xFF", 1}};
    for (auto const& c : malformed) {
        EXPECT_EQ(wide(c.bytes + "A"), std::wstring(static_cast<std::size_t>(c.replacements), wchar_t{0xFFFD}) + L'A')
            << testing::PrintToString(c.bytes);
        EXPECT_EQ(decoded(c.bytes).size, -1) << testing::PrintToString(c.bytes);
    }
}

TEST(CodePage, InLatin1) {
    if (!runsIn("ISO-8859-1")) GTEST_SKIP() << "not this code page";
    EXPECT_EQ(wide("caf\xE9"), L"caf\u00E9");
    EXPECT_EQ(strictly(L"caf\u00E9"), "caf\xE9");
    EXPECT_EQ(strictly({0x61, 0x20AC, 0xD83D, 0xDE00, 0xD800, 0x62}), "a???b*");
    EXPECT_EQ(decoded("\xE9\xE8"), (Decoded{1, 0xE9}));
    EXPECT_EQ(narrow(std::wstring(200, wchar_t{0xE9}), 200), std::string(200, '\xE9'));
}

TEST(CodePage, InGbk) {
    if (!runsIn("GBK")) GTEST_SKIP() << "not this code page";
    EXPECT_EQ(wide("\xD6\xD0z\xCE\xC4"), (std::wstring{0x4E2D, 0x7A, 0x6587}));
    EXPECT_EQ(strictly({0x4E2D, 0x7A, 0x6587}), "\xD6\xD0z\xCE\xC4");
    EXPECT_EQ(strictly({0x4E2D, 0xEB}), "\xD6\xD0?*");
    EXPECT_EQ(narrow({0x61, 0x4E2D}, 2), "");
    EXPECT_EQ(decoded("\xD6\xD0\xD6"), (Decoded{2, 0x4E2D}));
    EXPECT_EQ(decoded("\xD6").size, -1);
    EXPECT_EQ(decoded("\xD6\xD0"), (Decoded{2, 0x4E2D}));  // the half character before it left nothing behind
    EXPECT_EQ(decoded("\xFF").size, -1);
    EXPECT_EQ(wide("a\xD6"), (std::wstring{0x61, 0xFFFD}));
}

}
