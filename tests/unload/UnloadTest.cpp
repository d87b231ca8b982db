#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(Unload, LoadingUsingFinishingAndUnloadingNeverHangsNorCrashes) {
    TemporaryFolder const folder;
    std::filesystem::path const path{folder.name()};
    ChildProcess host{ORN_UNLOAD_HOST,
                      {ORN_UNLOAD_PLUGIN, ORN_UNLOAD_LIBRARY, "20"},
                      {{"ORNDEBUGPRINTFILE", ""},
                       {"ORNDEBUGPRINTTEMPLATE", ""},
                       {"ORN_REGISTRY", path / "registry"},
                       {"XDG_CACHE_HOME", path}},
                      path / "printed"};
    EXPECT_EQ(host.wait(120s), 0) << folder.get("printed");
}
