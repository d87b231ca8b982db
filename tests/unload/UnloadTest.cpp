#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(Unload, LoadingUsingFinishingAndUnloadingNeverHangsNorCrashes) {
    for (char const* page : {"UTF-8", "ISO-8859-1"}) {
        TemporaryFolder const folder;
        std::filesystem::path const path{folder.name()};
        ChildProcess host{ORN_UNLOAD_HOST,
                          {ORN_UNLOAD_PLUGIN, ORN_UNLOAD_LIBRARY, "10"},
                          {{"ORNDEBUGPRINTFILE", ""},
                           {"ORNDEBUGPRINTTEMPLATE", ""},
                           {"ORN_REGISTRY", path / "registry"},
                           {"LC_ALL", std::string{"xx_XX."} + page},
                           {"XDG_CACHE_HOME", path}},
                          path / "printed"};
        EXPECT_EQ(host.wait(120s), 0) << page << ' ' << folder.get("printed");
    }
}
