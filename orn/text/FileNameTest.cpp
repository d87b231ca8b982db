#include "orn/text/FileName.h"

#include "orn/text/CharacterClass.h"
#include "orn/text/Strings.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <tuple>

namespace {

TEST(FileName, DirectoriesAndNames) {
    std::wstring const long300(300, L'l'), dotted = L'.' + long300, longer = long300 + L'/' + long300 + dotted;
    struct {
        wchar_t const *path, *directory, *base, *extension;
    } const cases[] = {
        {L"C:\\a\\b\\f.txt", L"C:\\a\\b", L"f", L".txt"},
        {L"C:f.txt", L"C:\\", L"f", L".txt"},
        {L"C:", L"C:\\", L"", L""},
        {L"a\\.profile", L"a", L"", L".profile"},
        {L"a\\..", L"a", L".", L"."},
        {L"\\\\server\\share\\f.txt", L"\\\\server\\share", L"f", L".txt"},
        {L"\\\\server\\f.txt", L"\\\\server\\f.txt", L"f", L".txt"},
        {L"x://h/a/b.txt", L"x://h/a/", L"b", L".txt"},
        {L"x://h.org", L"x://", L"h", L".org"},
        {longer.c_str(), long300.c_str(), long300.c_str(), dotted.c_str()},  // no part is too long
    };
    for (auto const& c : cases) {
        std::wstring base, extension;
        EXPECT_EQ(getDirectory(c.path, base, extension), c.directory);
        EXPECT_TRUE(base == c.base && extension == c.extension) << ::testing::PrintToString(c.path);

        // The outputs may be the path.
        std::wstring path = c.path;
        EXPECT_EQ(getDirectory(path, path), c.directory);
        EXPECT_EQ(path, base + extension);
        path = c.path;
        EXPECT_EQ(getDirectory(path, path, extension), c.directory);
        EXPECT_EQ(path, base);
    }
}

TEST(FileName, JoinsWithOneSeparator) {
    std::wstring const own(1, static_cast<wchar_t>(std::filesystem::path::preferred_separator));
    std::array<std::wstring, 3> const cases[] = {
        {L"C:\\a", L"b", L"C:\\a\\b"},
        {L"C:\\", L"b", L"C:\\b"},
        {L"C:", L"b", L"C:\\b"},
        {L"a\\b/c", L"d", L"a\\b/c\\d"},
        {L"a/", L"b", L"a/b"},
        {L"a/b", L"c", L"a/b" + own + L"c"},
        {L"a", L"b", L"a" + own + L"b"},
        {L"x://h/a", L"b", L"x://h/a/b"},
        {L"x://h/a\\", L"b", L"x://h/a\\b"},
        {L"", L"b", L"b"},
    };
    for (auto const& [directory, name, joined] : cases) EXPECT_EQ(joinDirectory(directory, name), joined);
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
    EXPECT_EQ(absoluteFilename(L"a"), joinDirectory(here, L"a"));
    EXPECT_EQ(absoluteFilename(withZero), L"");
    for (std::wstring const none : {L"", L"no such file", L"no\\such\\FILE~1.TXT", L"x://h/a", withZero.c_str()})
        EXPECT_EQ(getLongFilename(none), none);
    EXPECT_EQ(getLongFilename(withZero), withZero);
}

TEST(FileName, RelativePathsMayBeAppended) {
    for (wchar_t const* path : {L"a\\b", L"a/b", L"/a", L"..", L"", L"a\\"}) EXPECT_TRUE(okToAddToAbsolutePath(path));
    for (wchar_t const* path : {L"\\a", L"\\\\s\\a", L"C:a", L"x://y", L"a:", L":"})
        EXPECT_FALSE(okToAddToAbsolutePath(path));
}

TEST(FileName, FileTypes) {
    std::tuple<wchar_t const*, wchar_t const*, unsigned int> const cases[] = {
        {L"x.DXF", L".dwg/.dxf", 2},
        {L"x.dw", L".dwg/.dxf", 0},
        {L"x", L".dwg/.dxf", 0},
        {L"x", L".dwg//.dxf", 2},
        {L"x", L"", 0},
        {L"x.a", L".a/.A", 1},
        {L"x://h/f.Dwg", L".dwg", 1},
        {L"x.", L".a/.", 2},
        {L"x.dwg", L"/.dwg", 2},
    };
    for (auto const& [path, extensions, number] : cases) EXPECT_EQ(analyzeFileType(path, extensions), number) << path;
}

TEST(FileName, Abbreviations) {
    std::tuple<wchar_t const*, std::size_t, wchar_t const*> const cases[] = {
        {L"C:\\alpha\\beta\\f.txt", 19, L"C:\\alpha\\beta\\f.txt"},
        {L"C:\\alpha\\beta\\f.txt", 16, L"C:\\alpha...f.txt"},
        {L"C:\\alpha\\beta\\f.txt", 15, L"C:\\alph...f.txt"},
        {L"C:\\alpha\\beta\\f.txt", 9, L"C...f.txt"},
        {L"C:\\alpha\\beta\\f.txt", 8, L"...f.txt"},
        {L"C:\\alpha\\beta\\f.txt", 7, L"f.txt"},
        {L"directory\\f.txt", 14, L"...f.txt"},
        {L"x://host/alpha/beta.txt", 21, L"x://host/a...beta.txt"},
        {L"/usr/share/doc/f", 15, L"/usr/share...f"},
        {L"", 0, L""},
    };
    for (auto const& [path, length, result] : cases) EXPECT_EQ(abbreviateFilename(path, length), result) << length;

    std::wstring const pair{L'\xD83D', L'\xDE00'};
    EXPECT_EQ(abbreviateFilename(L"/" + pair + L"/abcdef/f", 7), L"/" + pair + L"...f");
    EXPECT_EQ(abbreviateFilename(L"/" + pair + L"/abcdef/f", 6), L"/...f");
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

TEST(FileName, CharactersOfFileNames) {
    for (char c : std::string{"_ a7Z$%'-@~`!(){}^#&+,;=[]."})
        EXPECT_TRUE(isFileChar(CodePoint::codePoint(static_cast<unsigned char>(c)))) << c;
    for (char c : std::string{"*?\\/:\"<>|\t\n\x7F\x01"} + '\0')
        EXPECT_FALSE(isFileChar(CodePoint::codePoint(static_cast<unsigned char>(c)))) << c;
    std::pair<unsigned int, bool> const cases[] = {
        {0x80, false},   {0xA0, true},   {0xAD, false},   {0xE9, true},    {0xBD, true},      {0x378, false},
        {0x300, true},   {0x2028, true}, {0x200B, false}, {0x20AC, true},  {0x4E00, true},    {0xD800, false},
        {0xE000, false}, {0xFEFF, true}, {0xFFFE, false}, {0x1D11E, true}, {0x110000, false}, {0xFFFFFFFF, false},
    };
    for (auto const& [value, allowed] : cases) EXPECT_EQ(isFileChar(CodePoint::codePoint(value)), allowed) << value;
}

}
