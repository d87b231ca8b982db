// Downloads from a real server. Where the system's own cache is used, only what all of its versions keep to is asked of it.
#include "orn/os/Download.h"

#include "tests/support/CacheFolder.h"
#include "tests/support/Faults.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string const& large() {
    static std::string const bytes = [] {
        std::string made(24'000'001, '\0');
        unsigned int state = 1;
        for (char& byte : made) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
        return made;
    }();
    return bytes;
}

/// The digits of escapes in whichever case.
std::string lower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
    return text;
}

class Download : public ::testing::Test {
protected:
    void answer(HttpServer::Client& client, std::string const& path) {
        if (path == "/small.txt" || path == "/small%20%c3%a9.txt?q") {
            client.content("small");
        } else if (path == "/empty.txt") {
            client.content("");
        } else if (path == "/large.bin") {
            client.content(large());
        } else if (path == "/slow.txt") {
            client.head("200 OK", "Content-Length: 10\r\n");
            for (char c = '0'; c <= '9'; ++c) {
                std::this_thread::sleep_for(std::chrono::milliseconds{20});
                if (c == '9') {
                    std::lock_guard const guard{lock_};
                    namesWhileUnderWay_ = names();
                }
                client.send(std::string(1, c));
            }
        } else if (path == "/cut.bin") {
            client.head("200 OK", "Content-Length: 100000\r\n");
            client.send(std::string(50'000, 'x'));
        } else if (path == "/cut-chunk.bin") {
            client.head("200 OK", "Transfer-Encoding: chunked\r\n");
            client.send("5\r\nhello\r\n");
        } else if (path == "/silent.bin") {
            client.head("200 OK", "Content-Length: 100000\r\n");
            client.send("begin");
            client.waitForEnd();
        } else if (path == "/there.txt") {
            client.head("302 Found", "Location: /small.txt\r\nContent-Length: 0\r\n");
        } else if (path == "/round.txt") {
            client.head("302 Found", "Location: /round.txt\r\nContent-Length: 0\r\n");
        } else if (path == "/file.txt") {
            client.head("302 Found", "Location: file:///etc/passwd\r\nContent-Length: 0\r\n");
        } else if (path == "/none.txt") {
            client.head("404 Not Found", "Content-Length: 5\r\n");
            client.send("sorry");
        } else if (path == "/secret.txt") {
            client.head("401 Unauthorized", "Content-Length: 0\r\n");
        }
    }

    /// The files in the cache, by the ends of their names; one in the making may have a short name of its own.
    std::set<std::string> names() const {
        std::set<std::string> found;
        std::error_code none;
        for (auto const& entry : std::filesystem::recursive_directory_iterator{cache_.name(), none})
            if (!entry.is_directory()) {
                std::string const name = lower(entry.path().filename().string());
                found.insert(name.size() > 37 ? name.substr(37) : name);
            }
        return found;
    }

    static std::string contentOf(std::wstring const& file) {
        std::ifstream stream{std::filesystem::path{file}, std::ios::binary};
        return {std::istreambuf_iterator<char>{stream}, {}};
    }

    /// Its content, or what went wrong.
    static std::string downloaded(std::wstring const& url) {
        std::wstring file = L"kept";
        HRESULT const status = ORN::os::downloadToCache(url.c_str(), file);
        if (status >= 0) return contentOf(file);
        EXPECT_EQ(file, L"kept");
        char text[16];
        std::snprintf(text, sizeof text, "%08X", static_cast<unsigned int>(status));
        return text;
    }

    CacheFolder cache_;
    std::mutex lock_;
    std::set<std::string> namesWhileUnderWay_;  // set by the server's thread, under the lock
    HttpServer server_{[this](HttpServer::Client& client, std::string const& path) { answer(client, lower(path)); }};
};

TEST_F(Download, TheWholeContentArrives) {
    EXPECT_EQ(downloaded(server_ / L"small.txt"), "small");
    EXPECT_EQ(downloaded(server_ / L"slow.txt"), "0123456789");
    EXPECT_EQ(downloaded(server_ / L"there.txt"), "small");
    EXPECT_TRUE(downloaded(server_ / L"large.bin") == large());

    TemporaryFolder const folder;
    folder.put("local file.txt", "local");
    std::wstring const drive = folder.name().substr(0, 1) == L"/" ? L"file://" : L"file:///";
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

TEST_F(Download, SeveralAtOnceAllHaveTheWhole) {
    std::vector<std::thread> threads;
    std::vector<std::string> contents(6);
    for (std::string& content : contents)
        threads.emplace_back([&content, this] { content = downloaded(server_ / L"large.bin"); });
    for (std::thread& thread : threads) thread.join();
    for (std::string const& content : contents) EXPECT_TRUE(content == large()) << content.size();
}

TEST_F(Download, TheCacheHoldsOneWholeFileForAUrl) {
    downloaded(server_ / L"small.txt");
    downloaded(server_ / L"small.txt");
    EXPECT_EQ(downloaded(server_ / L"small \xE9.txt?q#part"), "small");
    EXPECT_EQ(downloaded(server_ / L"empty.txt"), "");
    downloaded(server_ / L"slow.txt");
    std::set<std::string> all{"small.txt", "small_20_c3_a9.txt", "empty.txt"};
    {
        std::lock_guard const guard{lock_};
        EXPECT_TRUE(namesWhileUnderWay_.contains("empty.txt") && !namesWhileUnderWay_.contains("slow.txt"));
    }
    all.insert("slow.txt");
    EXPECT_EQ(names(), all);
}

TEST_F(Download, FailuresAreToldApartAndLeaveNothing) {
    struct {
        std::wstring url;
        char const* status;
    } const cases[] = {
        {server_ / L"cut.bin", "800C0008"},
        {server_ / L"cut-chunk.bin", "800C0008"},
        {server_ / L"no answer", "800C0008"},
        {server_ / L"none.txt", "800C0006"},
        {server_ / L"secret.txt", "800C0009"},
        {server_ / L"round.txt", "800C0014"},
        {server_ / L"file.txt", "800C0014"},
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
        EXPECT_EQ(downloaded(server_ / L"silent.bin"), "800C000B");
    }
    faults::Refuse const fullDisk{"write", 3};
    EXPECT_EQ(downloaded(server_ / L"large.bin"), "80070070");
    EXPECT_TRUE(names().empty());
}

// A folder that cannot be made, and a file in its place that cannot be replaced.
TEST_F(Download, AnUnusableCacheIsAFailure) {
    std::wstring file;
    ASSERT_EQ(ORN::os::downloadToCache((server_ / L"small.txt").c_str(), file), 0);
    std::filesystem::path const path{file};
    std::filesystem::remove(path);
    std::filesystem::create_directories(path / "occupied");
    EXPECT_EQ(downloaded(server_ / L"small.txt"), "80070005");
    EXPECT_EQ(cache_.count(), 1);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{path.parent_path()}, {}), 1);

    cache_.put("file", "");
    setenv("XDG_CACHE_HOME", std::filesystem::path{cache_ / L"file"}.c_str(), 1);
    EXPECT_EQ(downloaded(server_ / L"small.txt"), "80070003");
}

#endif

}
