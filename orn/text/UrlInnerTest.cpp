#include "orn/text/Url.h"

#include "tests/support/CacheFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

#if defined(__linux__)
// Whatever a file is called, the URL guessed for its name finds it.
TEST(UrlInner, FullNamesOfFilesBecomeTheirUrls) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    folder.put("a b#?%41\\&\xC3\xA9\xF0\x9F\x98\x80.txt", "content");
    std::wstring const url = cleanupUrl(folder / L"./a b#?%41\\&\xE9\xD83D\xDE00.txt");
    EXPECT_EQ(url, L"file://" + (folder / L"a%20b%23%3F%2541%5C%26%C3%A9%F0%9F%98%80.txt"));
    std::ifstream stream{std::filesystem::path{downloadUrlToCache(url)}};
    EXPECT_EQ((std::string{std::istreambuf_iterator<char>{stream}, {}}), "content");
    EXPECT_EQ(cleanupUrl(L"//a b"), L"//a%20b/");
}
#endif

}
