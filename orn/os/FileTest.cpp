#include "orn/os/File.h"

#include "orn/os/CodePage.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

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
    EXPECT_TRUE(os::fileExists(folder.name()));
    EXPECT_EQ(folder.count(), files);
}

TEST(OsFile, ANameThatNoFileCanHaveIsAMissingFile) {
    TemporaryFolder const folder;
    std::wstring zero = folder / L"cut";
    zero.push_back(L'\0');
    zero += L"off";
    errno = 0;
    EXPECT_EQ(os::openFile(zero, L"wb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(os::fileExists(zero));
    EXPECT_EQ(os::openFile(L"", L"rb"), nullptr);
    EXPECT_FALSE(os::fileExists(L""));
    EXPECT_EQ(folder.count(), 0);
}

TEST(OsFile, PositionsAreSixtyFourBitsWideAndFailuresHaveAReason) {
    TemporaryFolder const folder;
    std::FILE* const file = os::openFile(folder / L"positions", L"w+b");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(os::seekFile(file, 5'000'000'000, SEEK_SET));
    EXPECT_EQ(os::tellFile(file), 5'000'000'000);
    bool failed = false;
    {
        faults::Refuse const refuse{"fwrite"};
        EXPECT_EQ(os::writeFile(file, "x", 1, failed), 0u);
        EXPECT_TRUE(failed);
        EXPECT_EQ(os::errnoText(), std::strerror(ENOSPC));
    }
    faults::Refuse const refuse{"fclose"};
    EXPECT_FALSE(os::closeFile(file));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_NO_THROW(folder.removeAll());  // would fail here on Windows while the stream were open
}

}
