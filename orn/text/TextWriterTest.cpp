#include "orn/text/TextWriter.h"

#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>

using namespace ORN;
using namespace std::string_literals;
using testing::ElementsAre;

namespace {

std::string bytesOf(std::wstring const& text, TextEncoding encoding, bool mark = false,
                    TextLineEnd lineEnd = lineEndCRLF) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> { TextWriter::create(raw, encoding, mark, lineEnd) } -> write(text);
    return raw.bytes;
}

TEST(TextWriter, BytesOfEveryEncoding) {
    std::wstring const text = L"x\n\u0080\u20AC\xD83D\xDE00";
    EXPECT_EQ(bytesOf(L"x\n", encMultibyte, true), "x\r\n");
    EXPECT_EQ(bytesOf(text, encUTF8, true), "\xEF\xBB\xBFx\r\n\xC2\x80\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(bytesOf(text, encUTF16, true), "\xFF\xFEx\0\r\0\n\0\x80\0\xAC\x20\x3D\xD8\x00\xDE"s);
    EXPECT_EQ(bytesOf(text, encUTF16le, true), bytesOf(text, encUTF16, true));
    EXPECT_EQ(bytesOf(text, encUTF16be, true), "\xFE\xFF\0x\0\r\0\n\0\x80\x20\xAC\xD8\x3D\xDE\x00"s);
    EXPECT_EQ(bytesOf(L"x", encUTF8, false), "x");
}

TEST(TextWriter, LineEnds) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> const writer{TextWriter::create(raw, encUTF8, false)};
    writer->write(L"a\nb\rc\r\nd\u2028\u2029\u0085e\fv\v\n\r");
    writer->writeLine(L"\r");
    writer->writeLine(L"\nx");
    writer->flush();
    EXPECT_EQ(raw.bytes, "a\r\nb\r\nc\r\nd\r\n\r\n\r\ne\fv\v\r\n\r\n\r\n\r\n\r\nx\r\n");
}

// What came before it is kept, and nothing stands in its place.
TEST(TextWriter, WhatIsNoCharacterIsAnError) {
    std::pair<std::wstring, std::wstring> cases[] = {{L"\xDC00 and behind", L"U+DC00"},
                                                     {L"\xD83D", L"U+D83D"},
                                                     {L"\xD83Dx", L"U+D83D"},
                                                     {L"\xDE00\xD83D", L"U+DE00"}};
    if (sizeof(wchar_t) == 4) cases[3] = {{static_cast<wchar_t>(0x110000)}, L"U+110000"};
    for (TextEncoding const encoding : {encMultibyte, encUTF8, encUTF16, encUTF16be})
        for (auto const& [text, character] : cases) {
            MemoryWriter raw;
            std::unique_ptr<TextWriter> const writer{TextWriter::create(raw, encoding, false)};
            EXPECT_EQ(thrown([&, &bad = text] { writer->write(L"before" + bad); }),
                      L"OrnError: The character " + character + L" cannot be written to the file \"memory\".");
            writer->flush();
            EXPECT_EQ(raw.bytes, bytesOf(L"before", encoding));
        }
}

TEST(TextWriter, TheBufferGoesOutWhenItIsFullAndNotBefore) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> writer{TextWriter::create(raw, encUTF8, false)};
    auto const sizesAfter = [&](std::wstring const& text) {
        writer->write(text);
        return raw.sizes;
    };
    EXPECT_THAT(sizesAfter(std::wstring(1022, L'x')), ElementsAre());
    EXPECT_THAT(sizesAfter(L"\xD83D\xDE00"), ElementsAre(1022)) << "four bytes for two left";
    EXPECT_THAT(sizesAfter(std::wstring(1020, L'y')), ElementsAre(1022));
    EXPECT_THAT(sizesAfter(L"z"), ElementsAre(1022, 1024));
    writer->flush();
    writer->write(L"end");
    writer.reset();
    EXPECT_THAT(raw.sizes, ElementsAre(1022, 1024, 1, 3));
    EXPECT_EQ(raw.flushes, 1);
    EXPECT_EQ(raw.bytes, std::string(1022, 'x') + "\xF0\x9F\x98\x80" + std::string(1020, 'y') + "zend");
}

TEST(TextWriter, AWriteThatFailsTakesNothingAndDeletingNeverThrows) {
    MemoryWriter full{1000};
    std::unique_ptr<TextWriter> writer{TextWriter::create(full, encUTF8, false)};
    writer->write(L"before");
    EXPECT_THROW(writer->write(std::wstring(1025, L'x')), std::runtime_error);
    writer->flush();
    EXPECT_EQ(full.bytes, "before");
    writer->write(std::wstring(1001, L'x'));
    EXPECT_THROW(writer->flush(), std::runtime_error);
    EXPECT_NO_THROW(writer.reset());
    EXPECT_THAT(full.sizes, ElementsAre(6, 1024, 1001, 1001));
    EXPECT_EQ(full.flushes, 1);

    auto raw = std::make_unique<MemoryWriter>();
    writer.reset(TextWriter::create(*raw, encUTF8, true));
    writer->close();
    EXPECT_EQ(raw->bytes, "\xEF\xBB\xBF");
    raw.reset();
    writer.reset();  // with an empty buffer it does not ask for the raw writer
}

TEST(TextWriter, CreatingAndAppendingFiles) {
    TemporaryFolder const folder;
    struct {
        std::string before;
        TextOpenMode mode;
        TextEncoding asked;
        std::string after;
        bool marked = true;
        TextLineEnd lineEnd = lineEndCRLF;
    } const cases[] = {
        {"old text", textCreate, encMultibyte, "x\r\n"},
        {"old text", textCreate, encUTF8, "\xEF\xBB\xBFx\r\n"},
        {"old text", static_cast<TextOpenMode>(7), encUTF16be, "\xFE\xFF\0x\0\r\0\n"s},
        {"", textAppend, encUTF16be, "\xFE\xFF\0x\0\r\0\n"s},
        {"", textAppend, encMultibyte, "x\r\n"},
        {"\xEF\xBB\xBFold", textAppend, encUTF16le, "\xEF\xBB\xBFoldx\r\n"},
        {"\xFF\xFE", textAppend, encUTF8, "\xFF\xFEx\0\r\0\n\0"s},
        {"\xFE\xFF\0o"s, textAppend, encMultibyte, "\xFE\xFF\0o\0x\0\r\0\n"s},
        {"\xEF\xBB", textAppend, encUTF16le, "\xEF\xBBx\r\n"},
        {"old", textAppend, static_cast<TextEncoding>(9), "oldx\r\n"},
        // A file without a mark keeps its encoding and line ends.
        {"", textCreate, encUTF8, "x\n", false, lineEndLF},
        {"old", textAppend, encUTF8, "oldx\n", false, lineEndLF},
        {"o\0"s, textAppend, encUTF16, "o\0x\0\r\0\n\0"s, false},
        {"o\0"s, textAppend, encUTF16le, "o\0x\0\n\0"s, false, lineEndLF},
        {"\0o"s, textAppend, encUTF16be, "\0o\0x\0\n"s, false, lineEndLF},
    };
    for (auto const& [before, mode, asked, after, marked, lineEnd] : cases) {
        std::wstring const name = folder.put("file", before);
        std::unique_ptr<TextWriter> const writer{marked ? TextWriter::create(name, mode, asked)
                                                        : TextWriter::create(name, mode, asked, false, lineEnd)};
        writer->writeLine(L"x");
        writer->close();
        EXPECT_EQ(folder.get("file"), after) << testing::PrintToString(before);
        EXPECT_NO_THROW(writer->close());
        EXPECT_THROW(writer->write(L"y"), std::logic_error);
        EXPECT_THROW(writer->flush(), std::logic_error);
    }
    std::unique_ptr<TextWriter> { TextWriter::create(folder / L"new", textAppend, encUTF8) } -> write(L"n");
    for (TextOpenMode const mode : {textCreate, textAppend}) {
        EXPECT_THROW(static_cast<void>(TextWriter::create(folder / L"no/such/folder", mode, encUTF8)), OrnError);
        for (auto const none : {static_cast<TextEncoding>(-1), static_cast<TextEncoding>(5)})
            EXPECT_EQ(TextWriter::create(folder / L"none", mode, none), nullptr);
    }
    MemoryWriter raw;
    EXPECT_EQ(TextWriter::create(raw, static_cast<TextEncoding>(5), true), nullptr);
    EXPECT_EQ(TextWriter::create(folder / L"new", textCreate, static_cast<TextEncoding>(5)), nullptr);
    EXPECT_EQ(folder.get("new"), "\xEF\xBB\xBFn") << "it is touched by nobody";
    EXPECT_EQ(folder.count(), 2) << "nothing is made without an encoding";
}

}
