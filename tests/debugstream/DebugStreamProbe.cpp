// One use of the debug stream in a process of its own, where the environment decides once. What it finds goes to standard
// output, a line each.
#include "orn/diagnosis/DebugStream.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "orn/threading/Lock.h"
#include "tests/support/OpenFiles.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace {

void writeAndLeave() {
    std::printf("active %d\n", DebugStream::isActive());
    {
        ExclusiveLock const writing{DebugStream::lock()};
        std::wostream& stream = DebugStream::stream();
        stream << L"a third is " << 1.0 / 3 << L" \xD83D\xDE00" << std::endl;
        std::printf("precision %d\n", static_cast<int>(stream.precision()));
    }
    std::printf("active %d %d\n", DebugStream::testActive(), DebugStream::isActive());
    DebugStream::flush();
    // The writer is not closed by anyone.
    DebugStream::stream() << L"not flushed";
}

/// What a first use that cannot make its file throws, and what is left afterwards.
template <typename Use>
void fail(Use use) {
    try {
        use();
        std::printf("nothing thrown\n");
    } catch (ORN::OrnError const& error) {
        std::printf("%s\n", utf8(std::wstring{error.wWhat()}).c_str());
    }
    std::printf("lock %d\n", static_cast<int>(DebugStream::lock()));
    DebugStream::stream() << L"lost" << std::flush;
    DebugStream::flush();
    std::printf("active %d\n", DebugStream::isActive());
}

void startTogether() {
    int const count = 8;
    std::atomic<int> ready{0}, active{0};
    std::vector<std::jthread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back([&] {
            ++ready;
            while (ready < count) std::this_thread::yield();
            active += DebugStream::isActive();
        });
    threads.clear();
    std::printf("active %d\n", active.load());
}

/// Writes lines in the way of who does not know what stream() may throw, and in a destructor; counts what is told.
void writeTo(std::string const& file) {
    int told = 0, lines = 0;
    struct Leaving {
        ~Leaving() {
            ExclusiveLock const writing{DebugStream::lock()};
            DebugStream::stream() << L"leaving " << wchar_t{0xDC00} << L'\n';
        }
    };

    for (; lines < 300; ++lines) try {
            Leaving const leaving;
            throw lines;
        } catch (int) {
            try {
                DebugStream::flush();
            } catch (ORN::OrnError const& error) {
                told += std::wstring{error.wWhat()}.find(std::wstring{file.begin(), file.end()}) != std::wstring::npos;
            }
        }
    DebugStream::stream() << static_cast<wchar_t const*>(nullptr);  // leaves the stream bad
    std::printf("told %d good %d\n", told, DebugStream::stream().good());
}

/// The files that it has been given, until it is killed.
[[noreturn]] void showFiles() {
    std::printf("files %d\n", static_cast<int>(openFiles()));
    std::fflush(stdout);
    for (;;) std::this_thread::sleep_for(std::chrono::seconds{1});
}

/// Writes without end, and tells of each line when flush has returned for it.
[[noreturn]] void writeUntilKilled() {
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

int main(int count, char** words) {
    std::string const use = count > 1 ? words[1] : "";
    if (use == "write") {
        writeAndLeave();
    } else if (use == "fail-stream") {
        fail([] { DebugStream::stream(); });
    } else if (use == "fail-active") {
        fail([] { DebugStream::isActive(); });
    } else if (use == "together") {
        startTogether();
    } else if (use == "lines" && count > 2) {
        writeTo(words[2]);
    } else if (use == "files") {
        showFiles();
    } else if (use == "until-killed") {
        writeUntilKilled();
    } else {
        return 2;
    }
    return 0;
}
