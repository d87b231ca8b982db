#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

TEST(Unload, LoadingUsingFinishingAndUnloadingNeverHangsNorCrashes) {
    for (std::string const page : {"UTF-8", "ISO-8859-1"}) {
        TemporaryFolder const folder;
        ChildProcess host{"orn-unload-host",
                          {ORN_UNLOAD_PLUGIN, ORN_UNLOAD_LIBRARY},
                          {{"ORNDEBUGPRINTFILE", ""},
                           {"ORNDEBUGPRINTTEMPLATE", ""},
                           {"ORN_REGISTRY", folder.path() / "registry"},
                           {"LC_ALL", "xx_XX." + page},
                           {"XDG_CACHE_HOME", folder.path()}},
                          folder.path() / "printed"};
        EXPECT_EQ(host.wait(std::chrono::seconds{120}), 0) << page << ' ' << folder.get("printed");
    }
}
