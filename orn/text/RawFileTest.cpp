#include "orn/text/RawFile.h"

#include "orn/foundation/Error.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

using namespace ORN;

namespace {

std::string readAll(RawFileReader& file) {
    std::string all;
    char buffer[7];
    while (std::int64_t const count = file.read(buffer, sizeof buffer)) {
        all.append(buffer, static_cast<std::size_t>(count));
    }
    return all;
}

void put(RawWriter& file, std::string const& bytes) { file.write(bytes.data(), bytes.size()); }

template <typename Call>
std::wstring messageOf(Call call) {
    try {
        call();
    } catch (OrnError const& error) {
        return error.wWhat();
    }
    return L"nothing thrown";
}

std::wstring wide(char const* text) { return {text, text + std::strlen(text)}; }

TEST(RawFile, WhatIsWrittenIsRead) {
    TemporaryFolder const folder;
    std::wstring const name = folder / L"bytes";
    std::string const bytes("\r\n\x1A\0\xFF tail", 10);
    {
        std::unique_ptr<RawFileWriter> const file{rawCreate(name)};
        EXPECT_EQ(file->name(), name);
        put(*file, bytes);
        file->close();
        file->close();
        EXPECT_EQ(file->name(), name);
        EXPECT_THROW(put(*file, "x"), std::logic_error);
        EXPECT_THROW(file->flush(), std::logic_error);
        EXPECT_THROW(file->seek(0, 1), std::logic_error);
    }
    EXPECT_EQ(folder.get("bytes"), bytes);
    std::unique_ptr<RawFileReader> const file{rawOpen(name)};
    EXPECT_EQ(readAll(*file), bytes);
    char byte;
    EXPECT_EQ(file->read(&byte, 1), 0);
}

TEST(RawFile, Seek) {
    TemporaryFolder const folder;
    std::unique_ptr<RawFileReader> const file{rawOpen(folder.put("ten", "0123456789"))};
    struct Case {
        std::int64_t offset;
        std::int32_t origin;
        std::uint64_t position;
    };
    for (auto const& [offset, origin, position] : {Case{0, 1, 0},
                                                   {0, 2, 10},
                                                   {0, 7, 10},
                                                   {-4, -1, 6},
                                                   {4, 0, 4},
                                                   {2, 1, 6},
                                                   {-5, 1, 1},
                                                   {0, 1, 1},
                                                   {50, 0, 50}}) {
        EXPECT_EQ(file->seek(offset, origin), position) << offset << " from " << origin;
    }
    EXPECT_THROW(file->seek(-1, 0), OrnError);
    EXPECT_EQ(file->seek(3, 0), 3u);
    EXPECT_EQ(readAll(*file), "3456789");
}

TEST(RawFile, CreateEmptiesAnOldFileAndCanReadIt) {
    TemporaryFolder const folder;
    std::unique_ptr<RawFileWriter> const file{rawCreate(folder.put("old", "something long"))};
    put(*file, "abcdef");
    file->seek(1, 0);
    char two[2];
    EXPECT_EQ(file->read(two, 2), 2);
    put(*file, "XY");  // straight after reading
    char one;
    EXPECT_EQ(file->read(&one, 1), 1);  // straight after writing
    EXPECT_EQ(one, 'f');
    put(*file, "gh");
    file->flush();
    EXPECT_EQ(folder.get("old"), "abcXYfgh");
}

TEST(RawFile, AppendReadsAnywhereAndWritesAtTheEnd) {
    TemporaryFolder const folder;
    {
        std::unique_ptr<RawFileWriter> const file{rawAppend(folder.put("log", "first,"))};
        file->seek(0, 0);
        char byte;
        EXPECT_EQ(file->read(&byte, 1), 1);
        EXPECT_EQ(byte, 'f');
        put(*file, "second,");
        file->seek(2, 0);
        put(*file, "third");
    }
    EXPECT_EQ(folder.get("log"), "first,second,third");
    std::unique_ptr<RawFileWriter> { rawAppend(folder / L"new") } -> write("n", 1);
    EXPECT_EQ(folder.get("new"), "n");
}

TEST(RawFile, FailuresNameTheFileAndTheReason) {
    TemporaryFolder const folder;
    std::wstring const missing = folder / L"missing";
    EXPECT_EQ(messageOf([&] { rawOpen(missing); }),
              L"The file \"" + missing + L"\" cannot be opened: " + wide(std::strerror(ENOENT)) + L".");
    std::wstring const within = folder / L"no/folder/here";
    for (auto const create : {rawCreate, rawAppend}) {
        EXPECT_EQ(messageOf([&] { create(within); }),
                  L"The file \"" + within + L"\" cannot be created: " + wide(std::strerror(ENOENT)) + L".");
    }
    EXPECT_EQ(messageOf([&] { rawOpen(std::wstring(L"a\0b", 3)); }).find(L"The file \"a"), 0u);

    EXPECT_EQ(fileOpen(missing, L"rb"), nullptr);
    EXPECT_EQ(fileOpen(within, L"wb"), nullptr);
    std::FILE* const stream = fileOpen(folder / L"made", L"wb");
    ASSERT_NE(stream, nullptr);
    std::fclose(stream);
    EXPECT_EQ(folder.count(), 1);
}

}
