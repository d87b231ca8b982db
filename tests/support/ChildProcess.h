/// Programs that a test starts, each under a time limit.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    /// Values are those of environment variables that the program has besides the test's own; all that it prints goes to
    /// a file. (Never to a pipe, which what it starts in turn would keep open.)
    ChildProcess(std::string const& program, std::vector<std::string> const& arguments,
                 std::map<std::string, std::filesystem::path> const& environment, std::filesystem::path const& output);
    ~ChildProcess();  ///< kills it if it still runs
    ChildProcess(ChildProcess const&) = delete;
    ChildProcess& operator=(ChildProcess const&) = delete;

    std::optional<int> wait(std::chrono::seconds limit);  ///< its exit code; nothing when it had to be killed
    void kill();                                          ///< at once and without its knowledge

private:
    struct Imp;
    std::unique_ptr<Imp> imp_;
};
