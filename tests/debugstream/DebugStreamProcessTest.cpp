#include "orn/text/Printf.h"
#include "orn/text/RawFile.h"
#include "ornmsg/ornmsg.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <sstream>
#include <thread>

using testing::EndsWith;
using testing::StartsWith;
using namespace std::chrono_literals;
using Path = std::filesystem::path;

namespace {

std::string const mark = "\xEF\xBB\xBF";
std::string const banner = "Tessaforge debug file created at ";

std::string bytes(Path const& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

class DebugStreamProcess : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> start(std::string const& use, Path const& pattern, Path const& file) const {
        std::filesystem::remove(output_);
        return std::make_unique<ChildProcess>(
            "orn-debug-stream-probe", std::vector{use},
            std::map<std::string, Path>{
                {"ORNDEBUGPRINTTEMPLATE", pattern}, {"ORNDEBUGPRINTFILE", file}, {"LC_ALL", "xx_XX.ISO-8859-1"}},
            output_);
    }

    /// Runs the probe to its end and returns what it printed.
    std::string run(std::string const& use, Path const& pattern, Path const& file) const {
        EXPECT_EQ(start(use, pattern, file)->wait(60s), 0);
        return printed(0);
    }

    /// What the probe has printed, when there are so many lines.
    std::string printed(int lines) const {
        for (auto const end = std::chrono::steady_clock::now() + 60s;; std::this_thread::sleep_for(1ms)) {
            std::string text = bytes(output_);
            std::erase(text, '\r');  // which Windows' runtime adds
            if (std::ranges::count(text, '\n') >= lines || std::chrono::steady_clock::now() > end) return text;
        }
    }

    TemporaryFolder temporary_, outside_;
    Path const folder_ = temporary_.path(), output_ = outside_.path() / "printed";
};

std::string wide(std::string const& ascii) {
    std::string text;
    for (char const letter : ascii) text += {letter, '\0'};
    return text;
}

TEST_F(DebugStreamProcess, TheEnvironmentNamesTheFile) {
    std::string const written = "a third is 0.333333333333333 \xD0\x96\xF0\x9F\x98\x80\r\n";
    temporary_.put("dbg0.txt", "zero");
    temporary_.put("dbg1.txt", "one");
    temporary_.put("latin.txt", "old\xE4");
    temporary_.put("wide.txt", "\xFF\xFE" + wide("old"));
    std::filesystem::create_directory(folder_ / "0-#");  // a folder bears a name, too
    Path const none, log = folder_ / "log.txt", latin = folder_ / "latin.txt", utf16 = folder_ / "wide.txt",
                     missing = folder_ / "missing";
    std::wstring const lost = (missing / "dbg0.txt").wstring(),
                       failure = stringPrintf(ornMsg(250).c_str(), lost.c_str(), std::strerror(ENOENT)) + L"\nactive";
    struct {
        Path pattern, file, made;
        std::string begins, ends, prints = "active";
    } const cases[] = {
        {none, none, none, "", ""},
        {folder_ / "no-mark.txt", none, none, "", ""},
        {folder_ / "dbg#.txt", folder_ / "other.txt", folder_ / "dbg2.txt", mark + banner, written},
        {folder_ / "#-#", none, folder_ / "1-#", mark + banner, written},
        {folder_ / u8"отладка-#-\U0001F600.txt", none, folder_ / u8"отладка-0-\U0001F600.txt", mark + banner, written},
        {none, log, log, mark + banner, written},
        {folder_ / "no mark", log, log, banner, written},  // appended
        {none, latin, latin, banner, "333 ??\r\n"},        // in an encoding that lacks these characters
        {none, utf16, utf16, wide(banner), wide("333 ") + "\x16\x04\x3D\xD8" + '\0' + "\xDE\r" + '\0' + '\n' + '\0'},
        // Files that cannot be made.
        {missing / "dbg#.txt", none, none, "", "", {failure.begin(), failure.end()}},
        {none, folder_, none, "", "", "The file"},
    };
    for (auto const& [pattern, file, made, begins, ends, prints] : cases) {
        SCOPED_TRACE(made);
        std::string const before = bytes(made);
        std::string const end = made.empty() ? "active 0, lock 0\nactive 0 0\n" : "active 8, lock 0\nactive 1 1\n";
        EXPECT_THAT(run("write", pattern, file), AllOf(StartsWith(prints), EndsWith(end)));
        EXPECT_THAT(bytes(made), AllOf(StartsWith(before + begins), EndsWith(ends)));
    }
    EXPECT_EQ(temporary_.get("dbg0.txt") + temporary_.get("dbg1.txt"), "zeroone");
    EXPECT_EQ(temporary_.count(), 9);

    // The banner has the time of a moment ago.
    std::string const text = temporary_.get("dbg2.txt");
    std::time_t const now = std::time(nullptr);
    bool recent = false;
    for (std::time_t time = now - 120; time <= now; ++time) {
        std::string const local = std::ctime(&time);
        recent |= text == mark + banner + local.substr(0, local.size() - 1) + "\r\n" + written;
    }
    EXPECT_TRUE(recent) << text;
}

TEST_F(DebugStreamProcess, AFullDiskIsAFailureOnceAndHarmsNobody) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no file that is always full";
    EXPECT_EQ(run("lines", {}, "/dev/full"), "failures 1 good 1\n");
    EXPECT_EQ(run("lines", {}, folder_ / "log"), "failures 0 good 1\n");
    EXPECT_THAT(temporary_.get("log"), EndsWith("\nleaving \xEF\xBF\xBD\r\n"));
}

TEST_F(DebugStreamProcess, ProgramsThatAreStartedDoNotInheritFiles) {
    auto child = start("files", {}, {});
    std::string const before = printed(1);
    std::wstring const name = temporary_ / L"file";
    std::unique_ptr<ORN::RawFileReader> made{ORN::rawCreate(name)}, read{ORN::rawOpen(name)}, end{ORN::rawAppend(name)};
    std::FILE* const opened = ORN::fileOpen(name, L"r+");
    child.reset();
    child = start("files", {}, {});
    EXPECT_EQ(printed(1), before);
    made.reset();
    read.reset();
    end.reset();
    std::fclose(opened);
    EXPECT_NO_THROW(std::filesystem::remove(folder_ / "file")) << "nobody has it open";
}

TEST_F(DebugStreamProcess, WhatFlushReturnedForOutlivesTheProcess) {
    for (int const lines : {1, 40, 400}) {
        Path const name = folder_ / ("killed-" + std::to_string(lines));
        auto const child = start("until-killed", {}, name);
        printed(lines);
        child->kill();

        std::istringstream numbers{printed(lines)};
        std::string expected;
        for (std::string number; std::getline(numbers, number) && !numbers.eof();)
            expected += "line " + number + "\r\n";
        std::string const text = bytes(name);
        ASSERT_THAT(text, StartsWith(mark + banner));
        EXPECT_THAT(text.substr(text.find('\n') + 1), StartsWith(expected));
    }
}

}
