// What it costs a program to start with the library, beside one that has nothing but the standard library: time, and the
// most memory that it ever had.
// starts: EmptyProgramBench.cpp OneFunctionBench.cpp
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// A program that runs until its standard input ends.
class Program {
public:
    Program(std::string const& name, int input) {
        std::string path = std::filesystem::read_symlink("/proc/self/exe").replace_filename(name);
        char* const arguments[] = {path.data(), nullptr};
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_adddup2(&files, input, 0);
        started_ = ::posix_spawn(&process_, path.c_str(), &files, nullptr, arguments, environ) == 0;
        posix_spawn_file_actions_destroy(&files);
    }

    bool end() const {
        int status = 1;
        return started_ && ::waitpid(process_, &status, 0) == process_ && status == 0;
    }

    /// In bytes, when it waits for its input. (What the kernel tells of an ended process may be its parent's.)
    double peak() const {
        double kilobytes = 0;
        for (char state = ' '; state != 'S';) {
            std::ifstream status{"/proc/" + std::to_string(process_) + "/status"};
            for (std::string word; status >> word;) {
                if (word == "State:") status >> state;
                if (word == "VmHWM:") status >> kilobytes;
            }
        }
        return kilobytes * 1024;
    }

private:
    pid_t process_ = 0;
    bool started_ = false;
};

void start(benchmark::State& state, std::string const& name) {
    int const nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    double least = std::numeric_limits<double>::max();
    for (auto _ : state) {
        auto const begin = std::chrono::steady_clock::now();
        if (!Program{name, nothing}.end()) state.SkipWithError("the program cannot be started");
        std::chrono::duration<double, std::nano> const taken = std::chrono::steady_clock::now() - begin;
        least = std::min(least, taken.count());
    }
    ::close(nothing);
    state.counters["least_ns"] = least;

    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return state.SkipWithError("no pipe");
    Program const waiting{name, ends[0]};
    state.counters["peak_bytes"] = waiting.peak();
    ::close(ends[1]);
    ::close(ends[0]);
    waiting.end();
}

BENCHMARK_CAPTURE(start, empty, "EmptyProgramBench")->Iterations(100);
BENCHMARK_CAPTURE(start, oneFunction, "OneFunctionBench")->Iterations(100);

}
