// Downloads from a real server, tests/support/http-server, which runs this program. Where the system's own cache is used,
// the tests ask only for what all of its versions do.
#include "orn/os/Download.h"

#include "tests/support/CacheFolder.h"
#include "tests/support/Faults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <numeric>
#include <set>

namespace {

// Every byte, 16,000 times.
std::string large() {
    std::string bytes(256 * 16'000, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

class Download : public ::testing::Test {
protected:
    void SetUp() override {
        char const* const address = std::getenv("ORN_TEST_SERVER");
        if (address == nullptr) GTEST_SKIP() << "tests/support/http-server runs this program with a server";
        server_ = std::filesystem::path{address}.wstring();
    }

    /// The files in the cache, by the ends of their names; one in the making may have a short name of its own.
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (auto const& entry : std::filesystem::recursive_directory_iterator{cache_.name()})
            if (!entry.is_directory()) {
                std::string const name = entry.path().filename().string();
                found.insert(name.size() > 37 ? name.substr(37) : name);
            }
        return found;
    }

    /// Its content, or what went wrong.
    static std::string downloaded(std::wstring const& url) {
        std::wstring file = L"kept";
        HRESULT const status = ORN::os::downloadToCache(url.c_str(), file);
        if (status >= 0) {
            std::ifstream stream{std::filesystem::path{file}, std::ios::binary};
            return {std::istreambuf_iterator<char>{stream}, {}};
        }
        EXPECT_EQ(file, L"kept");
        char text[16];
        std::snprintf(text, sizeof text, "%08X", static_cast<unsigned int>(status));
        return text;
    }

    CacheFolder cache_;
    std::wstring server_;
};

TEST_F(Download, TheWholeContentArrives) {
    EXPECT_EQ(downloaded(server_ + L"small.txt"), "small");
    EXPECT_EQ(downloaded(server_ + L"there.txt"), "small");
    EXPECT_TRUE(downloaded(server_ + L"large.bin") == large());
    TemporaryFolder const folder;
    folder.put("local file.txt", "local");
    std::wstring const drive = folder.name().starts_with(L'/') ? L"file://" : L"file:///";
    EXPECT_EQ(downloaded(drive + (folder / L"local%20file.txt")), "local");
}

TEST_F(Download, WhatIsNotThereFails) {
    std::wstring file = L"kept";
    for (wchar_t const* url : {L"", L"no scheme", L"zz://h/a.b", L"file:///no/such/file.x", L"http://127.0.0.1:1/a.b"})
        EXPECT_LT(ORN::os::downloadToCache(url, file), 0) << ::testing::PrintToString(url);
    EXPECT_EQ(file, L"kept");
    EXPECT_TRUE(names().empty());
}

#if defined(__linux__)

TEST_F(Download, TheCacheHoldsOneWholeFileForAUrl) {
    auto slow = std::async(std::launch::async, [this] { return downloaded(server_ + L"slow.txt"); });
    downloaded(server_ + L"meet");
    EXPECT_FALSE(names().contains("slow.txt"));  // not before it is whole
    downloaded(server_ + L"meet");
    EXPECT_EQ(slow.get(), "0123456789");
    std::future<std::string> contents[6];
    for (auto& content : contents)
        content = std::async(std::launch::async, [this] { return downloaded(server_ + L"large.bin"); });
    for (auto& content : contents) EXPECT_TRUE(content.get() == large());
    EXPECT_EQ(downloaded(server_ + L"small \xE9.txt?q#part"), "small");
    EXPECT_EQ(downloaded(server_ + L"empty.txt"), "");
    EXPECT_EQ(names(), (std::set<std::string>{"large.bin", "small_20_C3_A9.txt", "empty.txt", "slow.txt", "meet"}));
}

TEST_F(Download, FailuresAreToldApartAndLeaveNothing) {
    struct {
        std::wstring url;
        char const* status;
    } const cases[] = {
        {server_ + L"cut.bin", "800C0008"},
        {server_ + L"cut-chunk.bin", "800C0008"},
        {server_ + L"no answer", "800C0008"},
        {server_ + L"none.txt", "800C0006"},
        {server_ + L"secret.txt", "800C0009"},
        {server_ + L"round.txt", "800C0014"},
        {server_ + L"file.txt", "800C0014"},
        {server_ + L"nowhere.txt", "800C0014"},
        {server_ + L"choice.txt", "800C0007"},
        {server_ + L"unchanged.txt", "800C0007"},
        {server_ + L"part.bin", "800C0008"},
        {L"", "800C0002"},
        {L"h/a", "800C0002"},
        {L"http://", "800C0002"},
        {L"ftp://h/a", "800C000D"},
        {L"http://127.0.0.1:1/", "800C0004"},
        {L"file:///dev/zero", "800C0006"},
        {L"file:///etc", "800C0006"},
    };
    for (auto const& [url, status] : cases) EXPECT_EQ(downloaded(url), status) << ::testing::PrintToString(url);
    {
        faults::Refuse const refuse{"patience"};
        EXPECT_EQ(downloaded(server_ + L"silent.bin"), "800C000B");
    }
    faults::Refuse const fullDisk{"write", 3};
    EXPECT_EQ(downloaded(server_ + L"large.bin"), "80070070");
    EXPECT_TRUE(names().empty());
}

// A folder that cannot be made, a file in it that cannot be, and one in its place that cannot be replaced.
TEST_F(Download, AnUnusableCacheIsAFailure) {
    std::wstring file;
    ASSERT_EQ(ORN::os::downloadToCache((server_ + L"small.txt").c_str(), file), 0);
    std::filesystem::path const path{file};
    std::filesystem::remove(path);
    std::filesystem::create_directories(path / "occupied");
    EXPECT_EQ(downloaded(server_ + L"small.txt"), "80070005");
    EXPECT_EQ(cache_.count(), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{path.parent_path()}, {}), 1);

    // The server is not asked for what cannot be kept. In that folder not even root can make a file.
    std::filesystem::remove_all(path.parent_path());
    std::filesystem::create_directory_symlink("/sys", path.parent_path());
    EXPECT_EQ(downloaded(server_ + L"none.txt"), "80070005");

    cache_.put("file", "");
    setenv("XDG_CACHE_HOME", std::filesystem::path{cache_ / L"file"}.c_str(), 1);
    EXPECT_EQ(downloaded(server_ + L"small.txt"), "80070003");
}

#endif

}
