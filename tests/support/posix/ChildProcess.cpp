#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

ChildProcess::ChildProcess(std::filesystem::path const& program, std::vector<std::string> const& arguments,
                           std::map<std::string, std::filesystem::path> const& environment,
                           std::filesystem::path const& output, std::filesystem::path const& errors) {
    std::string const path = std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (std::string const& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);

    process_ = fork();
    if (process_ == -1) throw std::runtime_error{"fork"};
    if (process_ != 0) return;
    auto const file = [](std::filesystem::path const& name) {
        return open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    };
    dup2(file(output), 1);
    dup2(errors.empty() ? 1 : file(errors), 2);
    for (auto const& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execv(path.c_str(), words.data());
    _exit(127);
}

ChildProcess::~ChildProcess() { kill(); }

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    auto const end = std::chrono::steady_clock::now() + limit;
    int status = 0;
    while (waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) return kill(), std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds{2});
    }
    ended_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void ChildProcess::kill() {
    if (ended_) return;
    ::kill(static_cast<pid_t>(process_), SIGKILL);
    waitpid(static_cast<pid_t>(process_), nullptr, 0);
    ended_ = true;
}
