#include "orn/text/Url.h"

#include "orn/foundation/Error.h"
#include "tests/support/CacheFolder.h"
#include "tests/support/Faults.h"
#include "tests/support/OpenFiles.h"
#include "tests/support/Thrown.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {

/// The text for an unspecified failure.
std::wstring unspecified([[maybe_unused]] wchar_t const* module) {
#if defined(__linux__)
    return L"Unspecified error";
#else
    return formatMessage(DWORD{0x80004005}, module);  // versions of Windows differ
#endif
}

TEST(UrlInner, RefusalsAreThrownWithTheUrlAndTheSystemsText) {
    std::wstring const understood =
        L"OrnError: The address \"http://h/ a\" cannot be understood: " + unspecified(nullptr);
    std::wstring const url = L"http://h/ a";
    {
        faults::Refuse const refuse{"UrlUnescape"};
        EXPECT_EQ(thrown([&] { unescapeUrl(url); }), understood);
    }
    {
        faults::Refuse const refuse{"UrlCanonicalize"};
        EXPECT_EQ(thrown([&] { canonicalizeUrl(url); }), understood);
        EXPECT_EQ(thrown([&] { cleanupUrl(url); }), understood);
    }
    {
        faults::Refuse const refuse{"UrlApplyScheme"};
        EXPECT_EQ(thrown([&] { cleanupUrl(url); }), understood);
    }
    faults::Refuse const refuse{"URLDownloadToCacheFile"};
    EXPECT_EQ(thrown([&] { downloadUrlToCache(url); }),
              L"OrnError: The address \"http://h/ a\" cannot be downloaded: " + unspecified(L"urlmon.dll"));
    EXPECT_EQ(refuse.refusals(), 1);
}

TEST(UrlInner, NoFailedAllocationLeavesAnythingBehind) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    std::wstring const name = folder.put("a file to download.txt", "content");
    std::wstring const url = (name.starts_with(L'/') ? L"file://" : L"file:///") + name;
    std::wstring const pages = L"www.h.org/a long path/../b";
    downloadUrlToCache(url);
    std::function<void()> const ways[] = {[&] { unescapeUrl(pages); }, [&] { canonicalizeUrl(pages); },
                                          [&] { cleanupUrl(pages); }, [&] { downloadUrlToCache(url); }};
    for (auto const& way : ways) {
        std::ptrdiff_t const files = openFiles();
        long const blocks = faults::liveBlocks();
        EXPECT_GE(faults::failEveryAllocation(way), 1);
        EXPECT_EQ(faults::liveBlocks(), blocks);
        EXPECT_EQ(openFiles(), files);
    }
}

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
