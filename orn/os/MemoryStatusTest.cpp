#include "orn/os/MemoryStatus.h"

#include "orn/os/posix/KernelMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace os = ORN::os;

namespace {

using Texts = std::map<std::string, std::string>;

constexpr std::uint64_t M = 1 << 20, space = std::uint64_t{1} << 47;

bool fill(Texts const& texts, os::MemoryStatus& status) {
    auto const file = [&](std::string const& name) {
        auto const found = texts.find(name);
        return found != texts.end() ? found->second : std::string{};
    };
    return os::KernelMemory{file}.fill(status, space);
}

TEST(MemoryStatus, KernelFiguresAreCutToEveryLimitThatHoldsTheProcess) {
    std::ifstream kernels{ORN_TEST_KERNELS};
    Texts texts, machine;
    int cases = 0;
    for (std::string line, name; std::getline(kernels, line);) {
        if (std::size_t const colon = line.find(": "); line.starts_with('/')) {
            texts[line.substr(0, colon)] += line.substr(colon + 2) + '\n';
        } else if (line.starts_with('=')) {
            SCOPED_TRACE(name);
            if (cases++ == 0) machine = texts;  // which the other groups limit
            texts.merge(Texts{machine});
            std::uint64_t physical = 0, available = 0, page = 0, availablePage = 0;
            std::istringstream{line.substr(1)} >> physical >> available >> page >> availablePage;
            os::MemoryStatus status{};
            ASSERT_TRUE(fill(texts, status));
            EXPECT_EQ(status.totalPhysical, physical * M);
            EXPECT_EQ(status.availablePhysical, available * M);
            EXPECT_EQ(status.totalPageFile, page * M);
            EXPECT_EQ(status.availablePageFile, availablePage * M);
            EXPECT_EQ(status.memoryLoad, 100 * (physical - available) / physical);
            EXPECT_TRUE(status.totalVirtual == space && status.availableVirtual == space);
            texts.clear();
        } else {
            name = line;
        }
    }
    EXPECT_EQ(cases, 8);
}

TEST(MemoryStatus, KernelFiguresNeedAMachine) {
    os::MemoryStatus status{};
    status.totalVirtual = 5;
    for (char const* text : {"", "MemFree: 1 kB\n", "MemTotal:\n", "MemTotal: 99999999999999999999 kB\n",
                             "MemTotal: 18014398509481984 kB\n", "MemTotal: -1 kB\n", "XMemTotal: 1 kB\n"}) {
        EXPECT_FALSE(fill({{"/proc/meminfo", text}}, status)) << text;
    }
    EXPECT_EQ(status.totalVirtual, 5u);

    // The largest figures there are add up to no small ones; what is in use is off the address space.
    ASSERT_TRUE(fill({{"/proc/meminfo", "MemTotal: 18014398509481983 kB\nSwapTotal: 18014398509481983 kB\n"},
                      {"/proc/self/status", "Name:\tx\nVmPeak:\t 9 kB\nVmSize:\t  4 kB\n"}},
                     status));
    EXPECT_EQ(status.totalPageFile, std::uint64_t(-1));
    EXPECT_EQ(status.memoryLoad, 100u);
    EXPECT_EQ(status.availableVirtual, space - 4096);
}

}
