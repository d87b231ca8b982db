#include "orn/os/File.h"

#include "orn/os/CodePage.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace ORN;

namespace {

// Where file names are in the code page, it may not hold this one.
bool isOutsideTheCodePage(std::wstring const& name) {
    char bytes[64];
    bool substituted = false;
    os::wideToMultibyteStrictly(name.data(), static_cast<int>(name.size()), bytes, sizeof bytes, substituted);
    return sizeof(wchar_t) == 4 && substituted;
}

TEST(OsFile, NamesBeyondAsciiAndTheBasicPlaneReachTheSameFileAgain) {
    TemporaryFolder const folder;
    std::ptrdiff_t files = 0;
    for (wchar_t const* name : {L"plain.txt", L"caf\u00e9.txt", L"\u56f3\u9762.csv", L"\xD83D\xDCD0.dat"}) {
        std::wstring const path = folder / name;
        EXPECT_FALSE(os::fileExists(path));
        EXPECT_EQ(os::openFile(path, L"rb"), nullptr);
        EXPECT_EQ(errno, ENOENT);
        std::FILE* const made = os::openFile(path, L"wb");
        ASSERT_EQ(made == nullptr, isOutsideTheCodePage(name));
        EXPECT_EQ(os::fileExists(path), made != nullptr);
        if (made == nullptr) continue;
        EXPECT_TRUE(os::closeFile(made));
        EXPECT_EQ(folder.count(), ++files);
    }
    for (std::wstring const& none : {std::wstring{}, folder / L"plain.txt" + L'\0'}) {
        EXPECT_FALSE(os::fileExists(none));
        EXPECT_EQ(os::openFile(none, L"wb"), nullptr);
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_TRUE(os::fileExists(folder.name()));
    EXPECT_EQ(folder.count(), files);
}

}
