#include "orn/os/CodePage.h"

#include "orn/os/ErrorText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

namespace os = ORN::os;

std::wstring wide(std::string const& bytes) {
    wchar_t units[16];
    int const count = os::multibyteToWide(bytes.data(), static_cast<int>(bytes.size()), units, 16);
    return {units, static_cast<std::size_t>(count)};
}

// The bytes, with a '*' behind them when something was put in a character's place.
std::string strictly(std::wstring const& units) {
    char bytes[64];
    bool substituted = false;
    int const count = os::wideToMultibyteStrictly(units.data(), static_cast<int>(units.size()), bytes, 64, substituted);
    return std::string(bytes, static_cast<std::size_t>(count)) + (substituted ? "*" : "");
}

// How many bytes the first character takes, and what it is.
std::pair<int, unsigned int> decoded(std::string const& bytes) {
    unsigned int value = 0xABCDEF;
    int const size = os::decodeMultibyte(bytes.data(), static_cast<int>(bytes.size()), value);
    return {size, value};
}

TEST(CodePage, WhatItHoldsStrictlyItGivesBack) {
    int held = 0;
    for (wchar_t unit = 0x20; unit < 0xFFFE; ++unit) {
        if (unit >= 0xD800 && unit <= 0xDFFF) continue;
        std::string const bytes = strictly({unit});
        if (bytes.empty() || (bytes.size() > 1 && bytes.back() == '*')) continue;
        ++held;
        ASSERT_EQ(wide(bytes), std::wstring{unit}) << std::hex << unsigned{static_cast<unsigned short>(unit)};
        ASSERT_EQ(decoded(bytes + bytes), (std::pair{static_cast<int>(bytes.size()), static_cast<unsigned int>(unit)}));
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
    EXPECT_TRUE(os::wideToMultibyte(L"abcd", 4, bytes, 4) == 4 && std::string_view(bytes, 4) == "abcd");
    EXPECT_TRUE(os::multibyteToWide("abcd", 4, units, 4) == 4 && std::wstring_view(units, 4) == L"abcd");
}

TEST(CodePage, OneCharacterIsDecodedAtATime) {
    EXPECT_EQ(decoded("ab"), (std::pair{1, 0x61u}));
    EXPECT_EQ(decoded(std::string("\0a", 2)).first, 0);
    EXPECT_EQ(decoded(""), (std::pair{-1, 0xABCDEFu}));
}

TEST(CodePage, ThreadsDoNotDisturbEachOther) {
    std::wstring const text = L"caf\u00E9 \u4E2D\u6587 z";
    std::string const expected = strictly(text);
    std::atomic<int> wrong{0};
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                for (int round = 0; round < 500; ++round) wrong += strictly(text) != expected || wide("abc") != L"abc";
            });
    }
    EXPECT_EQ(wrong, 0);
}

}
