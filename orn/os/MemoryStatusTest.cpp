#include "orn/os/MemoryStatus.h"

#include "orn/os/posix/KernelMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

namespace os = ORN::os;

namespace {

using Texts = std::map<std::string, std::string>;

constexpr std::uint64_t M = 1 << 20, space = std::uint64_t{1} << 47;

std::string const machine =
    "MemTotal:        8388608 kB\nMemFree:         1048576 kB\nMemAvailable:    4194304 kB\n"
    "SwapTotal:       2097152 kB\nSwapFree:        1048576 kB\n";

bool fill(Texts texts, os::MemoryStatus& status) {
    texts.try_emplace("/proc/meminfo", machine);
    auto const file = [&](std::string const& name) {
        auto const found = texts.find(name);
        return found != texts.end() ? found->second : std::string{};
    };
    return os::KernelMemory{file}.fill(status, space);
}

std::string const second = "29 23 0:26 / /sys/fs/cgroup rw,nosuid shared:4 - cgroup2 cgroup2 rw,nsdelegate\n";
std::string const first =
    "33 32 0:30 / /g/cpu rw - cgroup cgroup rw,cpu\n34 32 0:31 / /g/m rw - cgroup cgroup rw,memory\n";

TEST(MemoryStatus, KernelFiguresAreCutToEveryLimitThatHoldsTheProcess) {
    struct {
        char const* what;
        Texts texts;
        std::uint64_t physical, available, page, availablePage;  // in MiB
    } const cases[] = {
        {"no groups", {}, 8192, 4096, 10240, 5120},
        {"the tightest of nested groups, whichever it is",
         {{"/proc/self/cgroup", "0::/a/b/c\n"},
          {"/proc/self/mountinfo", second},
          {"/sys/fs/cgroup/a/b/c/memory.max", "max\n"},
          {"/sys/fs/cgroup/a/b/memory.max", "1073741824\n"},
          {"/sys/fs/cgroup/a/b/memory.current", "943718400\n"},  // 900 MiB
          {"/sys/fs/cgroup/a/b/memory.stat", "anon 1\ninactive_file 209715200\nactive_file 5\n"},
          {"/sys/fs/cgroup/a/memory.max", "2147483648\n"},
          {"/sys/fs/cgroup/a/memory.current", "2097152000\n"},  // 2000 MiB
          {"/sys/fs/cgroup/a/memory.swap.max", "0\n"},
          {"/sys/fs/cgroup/ab/memory.max", "1\n"}},
         1024,
         48,
         1024,
         48},
        {"a group's own limit, beside groups of the other version",
         {{"/proc/self/cgroup", "4:cpu,memory:/p\n3:cpu:/q\n0::/x\n"},
          {"/proc/self/mountinfo", first + second},
          {"/g/cpu/q/memory.limit_in_bytes", "1\n"},
          {"/g/m/q/memory.limit_in_bytes", "1\n"},
          {"/g/m/memory.limit_in_bytes", "9223372036854771712\n"},
          {"/g/m/p/memory.limit_in_bytes", "536870912\n"},
          {"/g/m/p/memory.usage_in_bytes", "536870912\n"},
          {"/g/m/p/memory.stat", "inactive_file 9\ntotal_inactive_file 104857600\n"},
          {"/g/m/p/memory.memsw.limit_in_bytes", "629145600\n"},
          {"/g/m/p/memory.memsw.usage_in_bytes", "734003200\n"}},
         512,
         100,
         600,
         0},
        {"a container that sees its own group at the mount",
         {{"/proc/self/cgroup", "0::/docker/1/in\n"},
          {"/proc/self/mountinfo", "9 8 0:7 /docker/1 /sys/fs/c\\040g rw - cgroup2 none rw\n"},
          {"/sys/fs/c g/memory.max", "1048576000\n"},
          {"/sys/fs/c g/in/memory.max", "2097152000\n"},
          {"/sys/fs/c g/docker/1/memory.max", "1\n"}},
         1000,
         1000,
         3048,
         2024},
        {"a group outside of the name space",
         {{"/proc/self/cgroup", "0::/../../z\n"},
          {"/proc/self/mountinfo", second},
          {"/sys/fs/cgroup/memory.max", "1048576000\n"},
          {"/sys/fs/cgroup/../../z/memory.max", "1\n"}},
         1000,
         1000,
         3048,
         2024},
        {"texts that mean nothing",
         {{"/proc/self/cgroup", "0::/a\nx\n:\n::\n0:\n"},
          {"/proc/self/mountinfo", "\n - \n1 - cgroup2\n- cgroup2 a b\n2 3 4 / - cgroup\n" + second},
          {"/memory.max", "1x"},
          {"/sys/fs/cgroup/a/memory.max", "12kB\n"},
          {"/sys/fs/cgroup/a/memory.swap.max", "-1\n"},
          {"/sys/fs/cgroup/memory.max", "99999999999999999999\n"},
          {"/sys/fs/cgroup/memory.current", "12\n"}},
         8192,
         4096,
         10240,
         5120},
        {"an old kernel", {{"/proc/meminfo", "MemTotal: 1024 kB\nMemFree: 2048 kB\nSwapTotal: x\n"}}, 1, 1, 1, 1},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        os::MemoryStatus status{};
        ASSERT_TRUE(fill(c.texts, status));
        EXPECT_EQ(status.totalPhysical, c.physical * M);
        EXPECT_EQ(status.availablePhysical, c.available * M);
        EXPECT_EQ(status.totalPageFile, c.page * M);
        EXPECT_EQ(status.availablePageFile, c.availablePage * M);
        EXPECT_EQ(status.memoryLoad, 100 * (c.physical - c.available) / c.physical);
        EXPECT_EQ(status.totalVirtual, space);
        EXPECT_EQ(status.availableVirtual, space);
    }
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
