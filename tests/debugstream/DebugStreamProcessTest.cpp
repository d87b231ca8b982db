#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFile.h"
#include "ornmsg/ornmsg.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

std::filesystem::path const unset;
std::string const mark = "\xEF\xBB\xBF";
std::string const banner = "Tessaforge debug file created at ";
std::string const written = "a third is 0.333333333333333 \xF0\x9F\x98\x80\r\n";

class DebugStreamProcess : public testing::Test {
protected:
    /// Runs the probe to its end and returns what it printed.
    std::string run(std::vector<std::string> const& use, std::filesystem::path const& pattern,
                    std::filesystem::path const& file) {
        ChildProcess child{ORN_DEBUG_STREAM_PROBE, use, environment(pattern, file), output_};
        EXPECT_EQ(child.wait(60s), 0);
        return printed();
    }

    std::string printed() const {
        std::string text = bytes(output_);
        std::erase(text, '\r');  // which Windows' runtime adds
        return text;
    }

    static std::map<std::string, std::filesystem::path> environment(std::filesystem::path const& pattern,
                                                                    std::filesystem::path const& file) {
        return {{"ORNDEBUGPRINTTEMPLATE", pattern}, {"ORNDEBUGPRINTFILE", file}};
    }

    static std::string bytes(std::filesystem::path const& file) {
        std::ifstream stream{file, std::ios::binary};
        return {std::istreambuf_iterator<char>{stream}, {}};
    }

    /// Nothing but the banner with the time of a moment ago.
    static void expectBanner(std::string const& line) {
        std::time_t const now = std::time(nullptr);
        bool recent = false;
        for (std::time_t time = now - 120; time <= now; ++time) {
            std::string text = std::ctime(&time);
            text.pop_back();
            recent |= line == banner + text + "\r\n";
        }
        EXPECT_TRUE(recent) << line;
    }

    TemporaryFolder temporary_, outside_;
    std::filesystem::path const folder_ = temporary_.name();
    std::filesystem::path const output_ = std::filesystem::path{outside_.name()} / "printed";
    std::string const active_ = "active 1\nprecision 15\nactive 1 1\n";
};

TEST_F(DebugStreamProcess, WithoutANameDiscardsEverything) {
    EXPECT_EQ(run({"write"}, unset, unset), "active 0\nprecision 15\nactive 0 0\n");
    EXPECT_EQ(run({"write"}, folder_ / "no-mark.txt", unset), "active 0\nprecision 15\nactive 0 0\n");
    EXPECT_EQ(temporary_.count(), 0);
}

TEST_F(DebugStreamProcess, ATemplateTakesTheFirstFreeName) {
    temporary_.put("dbg0.txt", "zero");
    temporary_.put("dbg1.txt", "one");
    EXPECT_EQ(run({"write"}, folder_ / "dbg#.txt", folder_ / "other.txt"), active_);
    std::string const text = temporary_.get("dbg2.txt");
    std::size_t const end = text.find('\n') + 1;
    ASSERT_THAT(text, StartsWith(mark + banner));
    expectBanner(text.substr(mark.size(), end - mark.size()));
    EXPECT_EQ(text.substr(end), written);
    EXPECT_EQ(temporary_.get("dbg0.txt") + temporary_.get("dbg1.txt"), "zeroone");
    EXPECT_EQ(temporary_.count(), 3);
}

TEST_F(DebugStreamProcess, ATemplatesNameMayHoldMoreMarksFoldersAndAnyCharacter) {
    std::filesystem::create_directory(folder_ / "0-#");  // a folder bears a name, too
    EXPECT_EQ(run({"write"}, folder_ / "#-#", unset), active_);
    EXPECT_THAT(bytes(folder_ / "1-#"), EndsWith(written));

    std::filesystem::path const foreign = folder_ / u8"отладка-#-\U0001F600.txt";
    EXPECT_EQ(run({"write"}, foreign, unset), active_);
    EXPECT_THAT(bytes(folder_ / u8"отладка-0-\U0001F600.txt"), EndsWith(written));
}

TEST_F(DebugStreamProcess, AFileIsMadeOrAppendedToInItsOwnEncoding) {
    std::filesystem::path const name = folder_ / "log.txt";
    EXPECT_EQ(run({"write"}, unset, name), active_);
    EXPECT_THAT(bytes(name), StartsWith(mark + banner));
    std::string const once = bytes(name);

    EXPECT_EQ(run({"write"}, folder_ / "no mark", name), active_);
    std::string const twice = bytes(name);
    ASSERT_THAT(twice, StartsWith(once + banner));
    EXPECT_THAT(twice, EndsWith(written));

    temporary_.put("wide.txt", std::string{"\xFF\xFEo\0l\0d\0", 8});
    EXPECT_EQ(run({"write"}, unset, folder_ / "wide.txt"), active_);
    EXPECT_THAT(temporary_.get("wide.txt"), StartsWith(std::string{"\xFF\xFEo\0l\0d\0T\0e\0s\0", 14}));
    EXPECT_EQ(temporary_.count(), 2);
}

TEST_F(DebugStreamProcess, AFileThatCannotBeMadeIsToldOnce) {
    std::filesystem::path const pattern = folder_ / "missing" / "dbg#.txt";
    std::wstring const name = (folder_ / "missing" / "dbg0.txt").wstring();
    std::string const failure = utf8(stringPrintf(ornMsg(250).c_str(), name.c_str(), std::strerror(ENOENT)));
    for (char const* const use : {"fail-stream", "fail-active"}) {
        std::string const told = run({use}, pattern, unset);
        EXPECT_THAT(told, EndsWith("\nlock 0\nactive 0\n"));
        EXPECT_THAT(told, StartsWith(failure + "\n"));
        EXPECT_THAT(run({use}, unset, folder_), AllOf(HasSubstr("orn-test-"), EndsWith("\nlock 0\nactive 0\n")));
    }
    EXPECT_EQ(temporary_.count(), 0);
}

TEST_F(DebugStreamProcess, AFullDiskIsToldOnceAndHarmsNobody) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no file that is always full";
    EXPECT_EQ(run({"lines", "/dev/full"}, unset, "/dev/full"), "told 1 good 1\n");
    EXPECT_EQ(run({"lines", "log"}, unset, folder_ / "log"), "told 0 good 1\n");
    EXPECT_THAT(temporary_.get("log"), EndsWith("\nleaving \xEF\xBF\xBD\r\n"));
}

TEST_F(DebugStreamProcess, ProgramsThatAreStartedDoNotInheritFiles) {
    auto const shown = [&](ChildProcess&) {
        auto const end = std::chrono::steady_clock::now() + 60s;
        while (!printed().ends_with('\n') && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(1ms);
        return printed();
    };
    std::string before;
    {
        ChildProcess child{ORN_DEBUG_STREAM_PROBE, {"files"}, {}, output_};
        before = shown(child);
    }
    std::filesystem::remove(output_);
    std::wstring const name = temporary_ / L"file";
    std::unique_ptr<ORN::RawFileReader> made{ORN::rawCreate(name)}, read{ORN::rawOpen(name)}, end{ORN::rawAppend(name)};
    std::FILE* const opened = ORN::fileOpen(name, L"r+");
    ChildProcess child{ORN_DEBUG_STREAM_PROBE, {"files"}, {}, output_};
    EXPECT_EQ(shown(child), before);
    made.reset();
    read.reset();
    end.reset();
    std::fclose(opened);
    EXPECT_NO_THROW(std::filesystem::remove(folder_ / "file")) << "nobody has it open";
}

TEST_F(DebugStreamProcess, ThreadsThatComeTogetherMakeOneFile) {
    EXPECT_EQ(run({"together"}, folder_ / "dbg#.txt", unset), "active 8\n");
    EXPECT_EQ(temporary_.count(), 1);
    std::string const text = temporary_.get("dbg0.txt");
    ASSERT_THAT(text, StartsWith(mark));
    expectBanner(text.substr(mark.size()));
}

TEST_F(DebugStreamProcess, WhatFlushReturnedForOutlivesTheProcess) {
    for (int const lines : {1, 40, 400}) {
        std::filesystem::path const name = folder_ / ("killed-" + std::to_string(lines));
        std::filesystem::remove(output_);
        ChildProcess child{ORN_DEBUG_STREAM_PROBE, {"until-killed"}, environment(unset, name), output_};
        auto const end = std::chrono::steady_clock::now() + 60s;
        while (std::ranges::count(printed(), '\n') < lines && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(1ms);
        child.kill();

        std::istringstream numbers{printed()};
        std::ostringstream expected;
        int told = 0;
        for (std::string number; std::getline(numbers, number) && !numbers.eof(); ++told)
            expected << "line " << number << "\r\n";
        ASSERT_GE(told, lines);
        std::string const text = bytes(name);
        ASSERT_THAT(text, StartsWith(mark + banner));
        EXPECT_THAT(text.substr(text.find('\n') + 1), StartsWith(expected.str()));
    }
}

}
