#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

struct ChildProcess::Imp {
    pid_t process;
    bool ended = false;
};

namespace {

void redirect(int stream, std::filesystem::path const& output) {
    dup2(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), stream);
}

}

ChildProcess::ChildProcess(std::filesystem::path const& program, std::vector<std::string> const& arguments,
                           std::map<std::string, std::filesystem::path> const& environment,
                           std::filesystem::path const& output, std::filesystem::path const& errors)
    : imp_{std::make_unique<Imp>()} {
    std::string const path = std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (std::string const& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);

    imp_->process = fork();
    if (imp_->process == -1) throw std::runtime_error{"fork"};
    if (imp_->process != 0) return;
    redirect(1, output);
    errors.empty() ? static_cast<void>(dup2(1, 2)) : redirect(2, errors);
    for (auto const& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execv(path.c_str(), words.data());
    _exit(127);
}

ChildProcess::~ChildProcess() { kill(); }

std::optional<int> ChildProcess::wait(std::chrono::seconds limit) {
    auto const end = std::chrono::steady_clock::now() + limit;
    int status = 0;
    while (waitpid(imp_->process, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > end) {
            kill();
            return std::nullopt;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{2});
    }
    imp_->ended = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void ChildProcess::kill() {
    if (imp_->ended) return;
    ::kill(imp_->process, SIGKILL);
    waitpid(imp_->process, nullptr, 0);
    imp_->ended = true;
}
