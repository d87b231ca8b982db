// One use of the debug stream in a process of its own, where the environment decides once. The first argument names the
// use. What it finds goes to standard output, a line each.
#include "orn/diagnosis/DebugStream.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "orn/threading/Lock.h"
#include "tests/support/OpenFiles.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Threads make the file together, or one of them is told why there can be none. Then all goes on.
void writeAndLeave() {
    int const count = 8;
    std::atomic<int> ready{0}, active{0};
    std::vector<std::jthread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back([&] {
            ++ready;
            while (ready < count) std::this_thread::yield();
            try {
                active += DebugStream::isActive();
            } catch (ORN::OrnError const& error) {
                std::printf("%s\n", utf8(std::wstring{error.wWhat()}).c_str());
            }
        });
    threads.clear();
    std::printf("active %d, lock %d\n", active.load(), static_cast<int>(DebugStream::lock()));
    {
        ExclusiveLock const writing{DebugStream::lock()};
        DebugStream::stream() << L"a third is " << 1.0 / 3 << L" \u0416\xD83D\xDE00" << std::endl;
    }
    std::printf("active %d %d\n", DebugStream::testActive(), DebugStream::isActive());
    DebugStream::flush();
    DebugStream::stream() << L"not flushed, and the writer is never closed";
}

/// Writes in a destructor, too, where stream() may not throw, and counts the failures that flush() throws.
void writeLines() {
    struct Leaving {
        ~Leaving() {
            ExclusiveLock const writing{DebugStream::lock()};
            DebugStream::stream() << L"leaving " << wchar_t{0xDC00} << L'\n';
        }
    };
    int failures = 0;
    for (int line = 0; line < 300; ++line) try {
            Leaving const leaving;
            throw line;
        } catch (int) {
            try {
                DebugStream::flush();
            } catch (ORN::OrnError const&) {
                ++failures;
            }
        }
    DebugStream::stream() << static_cast<wchar_t const*>(nullptr);  // leaves the stream bad
    std::printf("failures %d good %d\n", failures, DebugStream::stream().good());
}

/// Prints how many files it was given, and keeps them until it is killed.
void showFiles() {
    std::printf("files %d\n", static_cast<int>(openFiles()));
    std::fflush(stdout);
    for (;;) std::this_thread::sleep_for(std::chrono::seconds{1});
}

/// Writes lines until it is killed, and prints the number of each when flush has returned for it.
void writeUntilKilled() {
    for (int number = 0;; ++number) {
        {
            ExclusiveLock const writing{DebugStream::lock()};
            DebugStream::stream() << L"line " << number << L'\n';
        }
        DebugStream::flush();
        std::printf("%d\n", number);
        std::fflush(stdout);
    }
}

}

int main(int, char** words) {
    std::map<std::string, void (*)()> const uses{
        {"write", writeAndLeave}, {"lines", writeLines}, {"files", showFiles}, {"until-killed", writeUntilKilled}};
    uses.at(words[1])();
}
