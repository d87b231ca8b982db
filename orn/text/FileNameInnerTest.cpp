// The parts of file names, told against a splitter of the system's.
#include "orn/text/FileName.h"

#include "orn/text/PathPartsImp.h"
#include "tests/support/SplitPath.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::wstring randomPath(std::mt19937& random) {
    static constexpr std::wstring_view alphabet = L"aaB:::..../\\/\\/\\ ~?\x00E9\x4E00";
    std::wstring path;
    for (std::size_t length = random() % 16; length > 0; --length) path += alphabet[random() % alphabet.size()];
    return path;
}

TEST(FileName, PathPartsAreThoseOfAnotherSplitter) {
    std::mt19937 random{57};
    for (int i = 0; i < 6000; ++i) {
        std::wstring const path = randomPath(random);
        ORN::PathParts const parts{path};
        SplitPath const expected{path};
        EXPECT_TRUE(parts.drive == expected.drive && parts.directory == expected.directory &&
                    parts.base == expected.base && parts.extension == expected.extension)
            << ::testing::PrintToString(path);
    }
}

TEST(FileName, PathPartsOfAnyLengthJoinToThePath) {
    std::mt19937 random{58};
    for (int i = 0; i < 200; ++i) {
        std::wstring path = randomPath(random) + std::wstring(random() % 2000, L'x');
        if (i % 2 == 0) path += randomPath(random) + std::wstring(1, L'\0');
        ORN::PathParts const parts{path};
        EXPECT_EQ(std::wstring{parts.drive}.append(parts.directory).append(parts.base).append(parts.extension), path);
    }
}

}
