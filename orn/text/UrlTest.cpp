#include "orn/text/Url.h"

#include "orn/foundation/Error.h"
#include "orn/text/FileName.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The text for a result that does not fit.
std::wstring tooLong() {
#if defined(__linux__)
    return L"Invalid pointer";
#else
    return formatMessage(DWORD{0x80004003}, nullptr);  // versions of Windows differ
#endif
}

TEST(Url, EscapesAreDecoded) {
    std::pair<std::wstring, std::wstring> const cases[] = {{L"http://h/a%20b?c%7e#%ff%C3", L"http://h/a b?c~#\xFF\xC3"},
                                                           {L"%41%zz%4G%%41%25%34%31%4", L"A%zz%4G%A%41%4"},
                                                           {L"a%00b", std::wstring(L"a\0b", 3)},
                                                           {std::wstring(L"a\0b", 3), L"a"},
                                                           {L"", L""}};
    for (auto const& [url, result] : cases) EXPECT_EQ(unescapeUrl(url), result) << ::testing::PrintToString(url);
}

// What Windows gives; where its versions differ there is no case.
struct Pair {
    wchar_t const *url, *result;
};
Pair const canonicalForms[] = {
    {L"http://h", L"http://h/"},
    {L"HTTP://Host.Org:8080/A", L"HTTP://Host.Org:8080/A"},
    {L"http://h/a/../b", L"http://h/b"},
    {L"http://h/a/..", L"http://h/"},
    {L"http://h/../a", L"http://h/../a"},
    {L"http://h/./a/../b", L"http://h/./b"},
    {L"http://h/a/../../b", L"http://h/../b"},
    {L"http://h/a/../..", L"http://h/.."},
    {L"http://h/a/%2E%2e/b", L"http://h/a/%2E%2e/b"},
    {L"zz://h/a/../b c", L"zz://h/b%20c"},
    {L"/a/b/../c", L"/a/c"},
    {L"../a b", L"../a%20b"},
    {L"http://h\\a\\..\\b", L"http://h/b"},
    {L"http://h/a b\tc ", L"http://h/a%20bc"},
    {L"http://h/\"<>{}|^[]`&", L"http://h/%22%3C%3E%7B%7D%7C%5E%5B%5D%60%26"},
    {L"http://h/!$'()*+,;=:@-._~", L"http://h/!$'()*+,;=:@-._~"},
    {L"http://h/\x01\x7F\x80\xFF\x100\x20AC", L"http://h/%01%7F%80%FF\x100\x20AC"},
    {L"http://h/a%20b%zz%", L"http://h/a%20b%zz%"},
    {L"http://h/a?b c#d \"e", L"http://h/a?b c#d \"e"},
    {L"http://h/a b#c d?e f", L"http://h/a%20b#c d?e f"},
    {L"mailto:a b@c", L"mailto:a%20b@c"},
    {L"mailto:a/../b", L"mailto:a%2F..%2Fb"},
    {L"C:\\a\\b#c.txt", L"file:///C:/a/b%23c.txt"},
    {L"C:/a b?c d", L"file:///C:/a%20b?c d"},
    {L"file:/C:/a", L"file:///C:/a"},
    {L"file://C:\\a\\b", L"file:///C:/a/b"},
    {L"file:\\\\s\\a b", L"file://s/a%20b"},
    {L"file:///C:/../a", L"file:///C:/../a"},
    {L"file:///C:", L"file:///C:/"},
    {L"file:///a/b/../c d#e", L"file:///a/c%20d%23e"},
    {L"file:a/../b", L"file:a/../b"},
    {L"", L""},
    {L"a#b c", L"a#b c"},
};

TEST(Url, CanonicalForms) {
    for (auto const& [url, result] : canonicalForms) {
        EXPECT_EQ(canonicalizeUrl(url), result) << ::testing::PrintToString(url);
        EXPECT_EQ(canonicalizeUrl(result), result);
        EXPECT_EQ(cleanupUrl(isURL(result) ? url : L""), isURL(result) ? result : L"");
    }
}

TEST(Url, SchemesAreGuessed) {
    Pair const cases[] = {
        {L"www.h.org", L"http://www.h.org/"},
        {L"WWW.h/a/../b c", L"http://WWW.h/b%20c"},
        {L"ftp.h.org/a", L"ftp://ftp.h.org/a"},
        {L"h.org/a b", L"h.org/a%20b"},
        {L"http://h/a b", L"http://h/a%20b"},
        {L"ftp://h/a", L"ftp://h/a"},
        {L"C:\\a b%20c\\d.txt", L"file:///C:/a%20b%2520c/d.txt"},
        {L"\\\\s\\a b\\c#", L"file://s/a%20b/c%23"},
        {L"file:///C:/a%20b", L"file:///C:/a%20b"},
        {L"mailto:www", L"mailto:www"},
        {L"//www.h/a b", L"//www.h/a%20b"},
        {L"", L""},
    };
    for (auto const& [url, result] : cases) EXPECT_EQ(cleanupUrl(url), result) << ::testing::PrintToString(url);
}

TEST(Url, WhatDoesNotFitIsRefusedWithTheUrlAndTheReason) {
    std::wstring const fits = L"http://h/" + std::wstring(2083 - 9, L'a');
    EXPECT_EQ(unescapeUrl(fits), fits);
    EXPECT_EQ(canonicalizeUrl(fits), fits);
    EXPECT_EQ(cleanupUrl(fits), fits);

    std::wstring const guessed = L"www." + std::wstring(2080 - 4, L'a'), grows(700, L' ');
    std::wstring const reason = L": " + tooLong();
    std::wstring const refused = L"OrnError: The address \"" + fits + L"a\" cannot be understood" + reason;
    EXPECT_EQ(thrown([&] { unescapeUrl(fits + L'a'); }), refused);
    EXPECT_EQ(thrown([&] { canonicalizeUrl(fits + L'a'); }), refused);
    EXPECT_NE(thrown([&] { cleanupUrl(guessed); }), L"nothing");
    EXPECT_NE(thrown([&] { canonicalizeUrl(L'a' + grows + L'a'); }), L"nothing");
}

TEST(Url, AFailedDownloadTellsTheUrlAndTheReason) {
    std::wstring const text = thrown([] { downloadUrlToCache(L"file:///no/such/file.x"); });
    std::wstring const start = L"OrnError: The address \"file:///no/such/file.x\" cannot be downloaded: ";
    EXPECT_TRUE(text.starts_with(start) && text.size() > start.size()) << ::testing::PrintToString(text);

    // Refused before the system sees them, whatever it could do with them.
    std::pair<DWORD, std::vector<std::wstring>> const refused[] = {
        {0x800C000D, {L"ftp://h/a", L"res://a/b", L"data:,a", L"FILES:///a", L"httpx://h", L"C:\\a.txt"}},
        {0x800C0002, {L"", L"h/a", L" h", L"://h"}}};
    for (auto const& [code, urls] : refused)
        for (std::wstring const& url : urls)
            EXPECT_EQ(
                thrown([&] { downloadUrlToCache(url); }),
                L"OrnError: The address \"" + url + L"\" cannot be downloaded: " + formatMessage(code, L"urlmon.dll"));
}

}
