#include "orn/text/Url.h"

#include "orn/foundation/Error.h"
#include "orn/text/FileName.h"
#include "tests/support/CacheFolder.h"
#include "tests/support/Cases.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

namespace {

constexpr Cases addresses{"orn/text/UrlTest.txt"};

TEST(Url, Forms) {
    for (auto const& [url, result] : addresses.of<2>("unescaped")) EXPECT_EQ(unescapeUrl(url), result) << url;
    for (auto const& [url, result] : addresses.of<2>("guessed")) EXPECT_EQ(cleanupUrl(url), result) << url;
    for (auto const& [url, result] : addresses.of<2>("canonical")) {
        EXPECT_EQ(canonicalizeUrl(url), result) << url;
        EXPECT_EQ(canonicalizeUrl(result), result);
        EXPECT_EQ(cleanupUrl(isURL(result) ? url : L""), isURL(result) ? result : L"");
    }
}

TEST(Url, WhatDoesNotFitIsRefusedWithTheUrlAndTheReason) {
    bool const posix = std::filesystem::path::preferred_separator == '/';
    std::wstring const fits = L"http://h/" + std::wstring(2083 - 9, L'a');
    std::wstring const reason = posix ? L"Invalid pointer" : formatMessage(DWORD{0x80004003}, nullptr);
    std::wstring const refused = L"OrnError: The address \"" + fits + L"a\" cannot be understood: " + reason;
    std::wstring (*const forms[])(std::wstring const&) = {unescapeUrl, canonicalizeUrl, cleanupUrl};
    for (auto const form : forms) {
        EXPECT_EQ(form(fits), fits);
        EXPECT_EQ(thrown([&] { form(fits + L'a'); }), refused);
    }
    EXPECT_NE(thrown([] { cleanupUrl(L"www." + std::wstring(2080 - 4, L'a')); }), L"nothing");
    EXPECT_NE(thrown([] { canonicalizeUrl(L'a' + std::wstring(700, L' ') + L'a'); }), L"nothing");
}

TEST(Url, AFailedDownloadTellsTheUrlAndTheReason) {
    std::wstring const text = thrown([] { downloadUrlToCache(L"file:///no/such/file.x"); });
    std::wstring const start = L"OrnError: The address \"file:///no/such/file.x\" cannot be downloaded: ";
    EXPECT_TRUE(text.starts_with(start) && text.size() > start.size()) << text;
    for (auto const& [url, code] : addresses.of<2>("refused"))
        EXPECT_EQ(thrown([&, &address = url] { downloadUrlToCache(address); }),
                  L"OrnError: The address \"" + url + L"\" cannot be downloaded: " +
                      formatMessage(static_cast<DWORD>(std::stoul(code, nullptr, 16)), L"urlmon.dll"));
}

#if defined(__linux__)
// Whatever a file is called, the URL guessed for its name finds it.
TEST(Url, FullNamesOfFilesBecomeTheirUrls) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    folder.put("a b#?%41\\&\xC3\xA9\xF0\x9F\x98\x80.txt", "content");
    std::wstring const url = cleanupUrl(folder / L"./a b#?%41\\&\xE9\xD83D\xDE00.txt");
    EXPECT_EQ(url, L"file://" + (folder / L"a%20b%23%3F%2541%5C%26%C3%A9%F0%9F%98%80.txt"));
    EXPECT_EQ(std::filesystem::file_size(downloadUrlToCache(url)), 7u);
    EXPECT_EQ(cleanupUrl(L"//a b"), L"//a%20b/");
}
#endif

}
