#include "orn/text/RawFile.h"

#include "orn/text/Encoding.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <tuple>

using namespace ORN;

namespace {

std::string readSome(RawFileReader& file, std::size_t most = 1000) {
    std::string bytes(most, '\0');
    bytes.resize(static_cast<std::size_t>(file.read(bytes.data(), most)));
    return bytes;
}

void put(RawWriter& file, std::string const& bytes) { file.write(bytes.data(), bytes.size()); }

TEST(RawFile, WhatIsWrittenIsRead) {
    TemporaryFolder const folder;
    std::wstring const name = folder / L"bytes";
    std::string const bytes("\r\n\x1A\0\xFF tail", 10);
    {
        std::unique_ptr<RawFileWriter> const file{rawCreate(name)};
        put(*file, bytes);
        file->close();
        file->close();
        EXPECT_EQ(file->name(), name);
        EXPECT_THROW(put(*file, "x"), std::logic_error);
        EXPECT_THROW(file->flush(), std::logic_error);
        EXPECT_THROW(file->seek(0, 1), std::logic_error);
    }
    std::unique_ptr<RawFileReader> const file{rawOpen(name)};
    EXPECT_EQ(readSome(*file, 7) + readSome(*file, 7) + readSome(*file), bytes);
}

TEST(RawFile, Seek) {
    TemporaryFolder const folder;
    std::unique_ptr<RawFileReader> const file{rawOpen(folder.put("ten", "0123456789"))};
    std::tuple<std::int64_t, std::int32_t, std::uint64_t> const cases[] = {
        {0, 1, 0}, {0, 2, 10}, {0, 7, 10}, {-4, -1, 6}, {4, 0, 4},
        {2, 1, 6}, {-5, 1, 1}, {0, 1, 1},  {50, 0, 50}, {5'000'000'000, 0, 5'000'000'000},
        {3, 0, 3}};
    for (auto const& [offset, origin, position] : cases) {
        EXPECT_THROW(file->seek(-1, 0), OrnError);
        EXPECT_EQ(file->seek(offset, origin), position) << offset << " from " << origin;
    }
    EXPECT_EQ(readSome(*file), "3456789");
}

TEST(RawFile, CreateEmptiesAnOldFileAndCanReadIt) {
    TemporaryFolder const folder;
    std::unique_ptr<RawFileWriter> const file{rawCreate(folder.put("old", "something long"))};
    put(*file, "abcdef");
    file->seek(1, 0);
    EXPECT_EQ(readSome(*file, 2), "bc");
    put(*file, "XY");                    // straight after reading
    EXPECT_EQ(readSome(*file, 1), "f");  // straight after writing
    put(*file, "gh");
    file->flush();
    EXPECT_EQ(folder.get("old"), "abcXYfgh");
}

TEST(RawFile, AppendReadsAnywhereAndWritesAtTheEnd) {
    TemporaryFolder const folder;
    {
        std::unique_ptr<RawFileWriter> const file{rawAppend(folder.put("log", "first,"))};
        file->seek(0, 0);
        EXPECT_EQ(readSome(*file, 1), "f");
        put(*file, "second,");
        file->seek(2, 0);
        put(*file, "third");
    }
    EXPECT_EQ(folder.get("log"), "first,second,third");
    {
        std::unique_ptr<RawFileReader> const grown{rawOpen(folder / L"log")};
        EXPECT_EQ(readSome(*grown), "first,second,third");
        EXPECT_EQ(readSome(*grown), "");
        put(*std::unique_ptr<RawFileWriter>{rawAppend(folder / L"log")}, ",more");
        EXPECT_EQ(readSome(*grown), ",more") << "behind what was the end";
    }
    put(*std::unique_ptr<RawFileWriter>{rawAppend(folder / L"new")}, "n");
    EXPECT_EQ(folder.get("new"), "n");
}

TEST(RawFile, StandardInputIsBytesAndStaysOpen) {
    TemporaryFolder const folder;
    std::wstring const file = folder.put("input", "one\r\n\x1A two");
    std::string const name{file.begin(), file.end()};
    ASSERT_NE(std::freopen(name.c_str(), "r", stdin), nullptr);
    {
        std::unique_ptr<RawFileReader> const input{rawStandardInput()};
        EXPECT_EQ(readSome(*input, 5), "one\r\n");
        input->close();
        EXPECT_THROW(readSome(*input), std::logic_error);
    }
    EXPECT_EQ(readSome(*std::unique_ptr<RawFileReader>{rawStandardInput()}), "\x1A two");
    std::fclose(stdin);
}

TEST(RawFile, FailuresNameTheFileAndTheReason) {
    TemporaryFolder const folder;
    std::wstring const missing = folder / L"missing", within = folder / L"no/folder/here";
    std::string const reason = std::strerror(ENOENT);
    auto const failure = [&](std::wstring const& name, wchar_t const* what) {
        return L"OrnError: The file \"" + name + L"\" cannot be " + what + L": " +
               std::wstring{reason.begin(), reason.end()} + L".";
    };
    EXPECT_EQ(thrown([&] { delete rawOpen(missing); }), failure(missing, L"opened"));
    for (auto const create : {rawCreate, rawAppend})
        EXPECT_EQ(thrown([&] { delete create(within); }), failure(within, L"created"));
    EXPECT_EQ(thrown([&] { delete rawOpen(std::wstring(L"a\0b", 3)); }).find(L"OrnError: The file \"a"), 0u);
    EXPECT_EQ(folder.count(), 0);
}

TEST(RawFile, AnyNameReachesItsFileAgain) {
    TemporaryFolder const folder;
    std::ptrdiff_t files = 0;
    for (wchar_t const* name : {L"plain.txt", L"caf\u00e9.txt", L"\u56f3\u9762.csv", L"\xD83D\xDCD0.dat"}) {
        // Where file names are in the code page, it may not hold this one.
        bool const held = sizeof(wchar_t) == 2 || getWCS(getMBS(name)) == name;
        std::wstring const path = folder / name;
        for (wchar_t const* mode : {L"rb", L"wb", L"rb"}) {
            std::FILE* const file = fileOpen(path, mode);
            EXPECT_TRUE(file == nullptr ? errno == ENOENT : std::fclose(file) == 0);
            EXPECT_EQ(file != nullptr, held && folder.count() > files) << path;
        }
        EXPECT_EQ(folder.count(), files += held);
    }
    for (std::wstring const& none : {std::wstring{}, folder / L"plain.txt" + L'\0', folder / L"no/folder/here"}) {
        EXPECT_EQ(fileOpen(none, L"wb"), nullptr);
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(folder.count(), files);
}

}
