/// Programs that a test starts, each under a time limit.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    /// Starts a program that lies beside the test's own, or where an absolute path says. Arguments are UTF-8, and
    /// have no backslash before a quote or at their end. The program has these environment variables besides the test's
    /// own. What it prints goes to a file, its errors to the same file or to another one. (A pipe would stay open in the
    /// programs that it starts in turn.)
    ChildProcess(std::filesystem::path const& program, std::vector<std::string> const& arguments,
                 std::map<std::string, std::filesystem::path> const& environment, std::filesystem::path const& output,
                 std::filesystem::path const& errors = {});
    ~ChildProcess();  ///< kills it if it still runs
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    std::optional<int> wait(std::chrono::milliseconds limit);  ///< its exit code; nothing when it had to be killed
    void kill();                                               ///< at once and without its knowledge

private:
    std::intptr_t process_;  // the system's number for it
    bool ended_ = false;
};
