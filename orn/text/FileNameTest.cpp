#include "orn/text/FileName.h"

#include "orn/text/Strings.h"
#include "tests/support/Cases.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

namespace {

constexpr Cases names{"orn/text/FileNameTest.txt"};

TEST(FileName, Parts) {
    std::wstring const longPart(300, L'l');  // no part is too long
    auto table = names.of<4>("parts");
    table.push_back({longPart + L'/' + longPart + L'.' + longPart, longPart, longPart, L'.' + longPart});
    for (auto const& [path, directory, base, extension] : table) {
        std::wstring baseFound, extensionFound;
        EXPECT_EQ(getDirectory(path, baseFound, extensionFound), directory);
        EXPECT_TRUE(baseFound == base && extensionFound == extension) << path;

        // The outputs may be the path.
        std::wstring name = path;
        EXPECT_EQ(getDirectory(name, name), directory);
        EXPECT_EQ(name, base + extension);
        name = path;
        EXPECT_EQ(getDirectory(name, name, extensionFound), directory);
        EXPECT_EQ(name, base);
    }
}

TEST(FileName, JoinedTypedAndAbbreviated) {
    for (auto& [directory, name, joined] : names.of<3>("joined")) {
        if (std::size_t const own = joined.find(L'*'); own != joined.npos)
            joined[own] = static_cast<wchar_t>(std::filesystem::path::preferred_separator);
        EXPECT_EQ(joinDirectory(directory, name), joined);
    }
    for (auto const& [path, may] : names.of<2>("appended"))
        EXPECT_EQ(okToAddToAbsolutePath(path), may == L"yes") << path;
    for (auto const& [path, extensions, number] : names.of<3>("types"))
        EXPECT_EQ(std::to_wstring(analyzeFileType(path, extensions)), number) << path;
    for (auto const& [path, length, result] : names.of<3>("abbreviated"))
        EXPECT_EQ(abbreviateFilename(path, std::stoul(length)), result) << length;
    for (auto const& [characters, may] : names.of<2>("characters"))
        for (CodePointEnumerator c{characters}; c; ++c) EXPECT_EQ(isFileChar(*c), may == L"yes") << (*c).value();
    for (unsigned int const none : {0x110000u, 0xFFFFFFFFu}) EXPECT_FALSE(isFileChar(CodePoint::codePoint(none)));
}

// Names in whatever form the system has are put together and taken apart without loss.
TEST(FileName, AbsoluteAndLongNames) {
    TemporaryFolder const folder;
    folder.put("f.txt", "here");
    std::wstring const directory = absoluteFilename(folder.name()), joined = joinDirectory(directory, L"f.txt");
    std::wstring name;
    EXPECT_EQ(getDirectory(joined, name), directory);
    EXPECT_EQ(name, L"f.txt");
    EXPECT_EQ(absoluteFilename(joined), joined);
    EXPECT_EQ(absoluteFilename(joinDirectory(directory, L"./d/../f.txt")), joined);
    EXPECT_EQ(std::filesystem::file_size(getLongFilename(joined)), 4u);

    std::wstring const here = std::filesystem::current_path().wstring(), withZero(L"a\0b", 3);
    EXPECT_EQ(absoluteFilename(L"x://h/../a"), L"x://h/../a");
    EXPECT_TRUE(absoluteFilename(L"") == here && absoluteFilename(L".") == here);
    for (wchar_t const* file : {L"a", L"./a", L"no/such/..//../a"})
        EXPECT_EQ(absoluteFilename(file), joinDirectory(here, L"a"));
    EXPECT_EQ(absoluteFilename(L"a//"), joinDirectory(here, L"a") + joinDirectory(here, L"")[here.size()]);
    EXPECT_EQ(absoluteFilename(L"/a/../../.."), std::filesystem::current_path().root_path().wstring());
    EXPECT_EQ(absoluteFilename(withZero), L"");
    for (std::wstring const& none : {L""s, L"no such file"s, L"no\\such\\FILE~1.TXT"s, L"x://h/a"s, withZero})
        EXPECT_EQ(getLongFilename(none), none);
}

TEST(FileName, TextsMayBeSlicesOfLongerOnes) {
    std::wstring_view const path = std::wstring_view{L"C:\\a\\f.txt|"}.substr(0, 10);
    std::wstring name, base, extension;
    EXPECT_EQ(getDirectory(path), L"C:\\a");
    EXPECT_EQ(getDirectory(path, name) + name, L"C:\\af.txt");
    EXPECT_EQ(getDirectory(path, base, extension) + base + L' ' + extension, L"C:\\af .txt");
    EXPECT_EQ(joinDirectory(path.substr(0, 4), path.substr(5)), path);
    EXPECT_EQ(absoluteFilename(path), absoluteFilename(std::wstring{path}));
    EXPECT_EQ(getLongFilename(path), path);
    EXPECT_EQ(analyzeFileType(path, std::wstring_view{L".dwg/.txt|"}.substr(0, 9)), 2u);
    EXPECT_EQ(abbreviateFilename(path, 9), abbreviateFilename(std::wstring{path}, 9));
    EXPECT_FALSE(isURL(path) || okToAddToAbsolutePath(path));
    EXPECT_EQ(uppercase(path.substr(5)) + lowercase(path.substr(0, 1)), L"F.TXTc");
    EXPECT_EQ(collateStrings(path.substr(0, 1), path.substr(0, 1)), 0);
}

}
