#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

/// What the probe prints where the loader finds this file in place of the libraries.
std::string printedWith(std::filesystem::path const& file, std::initializer_list<char const*> libraries) {
    TemporaryFolder const found, other;
    for (char const* const library : libraries) std::filesystem::create_symlink(file, found.path() / library);
    other.put("no-registry", std::string(5000, ' '));
    ChildProcess probe{"orn-services-probe",
                       {"all"},
                       {{"LD_LIBRARY_PATH", found.path()},
                        {"XDG_CACHE_HOME", other.path()},
                        {"ORN_REGISTRY", other.path() / "no-registry"}},
                       other.path() / "printed"};
    EXPECT_EQ(probe.wait(60s), 0);
    return other.get("printed");
}

TEST(Services, AProgramStartsWithoutTheirLibrariesAndIsToldWhichOneItLacks) {
    std::string const download = "The address \"file:///dev/null/file\" cannot be downloaded: ",
                      others =
                          "served\n"
                          "HKEY_CURRENT_USER\\key\r\nThe system has attempted to load or restore a file into the "
                          "registry, but the specified file is not in a registry file format.\n"
                          "Error \"Invalid window handle.\" calling PostMessage\n";
    EXPECT_EQ(printedWith("", {}), download + "There is nothing at this address.\n" + others);
    EXPECT_EQ(printedWith("/dev/null", {"libcurl.so.4", "liblcms2.so.2", "libsqlite3.so.0", "libxcb.so.1"}),
              download +
                  "The library libcurl.so.4 is missing or too old.\n"
                  "Error \"The library liblcms2.so.2 is missing or too old.\" calling GetStandardColorSpaceProfile\n"
                  "HKEY_CURRENT_USER\\key\r\nThe library libsqlite3.so.0 is missing or too old.\n"
                  "Error \"The library libxcb.so.1 is missing or too old.\" calling PostMessage\n");
    // A library that has none of the functions.
    EXPECT_EQ(printedWith(ORN_ANOTHER_LIBRARY, {"libuuid.so.1"}),
              download + "The library libuuid.so.1 is missing or too old.\n" + others);
}

}
