#include "orn/text/TextWriter.h"

#include "orn/text/Encoding.h"
#include "orn/text/TextReader.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace ORN;
using namespace std::string_literals;
using testing::ElementsAre;

namespace {

std::string bytesOf(std::wstring const& text, TextEncoding encoding, bool mark = false) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> { TextWriter::create(raw, encoding, mark) } -> write(text);
    return raw.bytes;
}

// What writing "before" and the text throws, when what came before is kept and nothing stands in the fault's place.
std::wstring failureOf(std::wstring const& text, TextEncoding encoding) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> const writer{TextWriter::create(raw, encoding, false)};
    std::wstring const failure = thrown([&] { writer->write(L"before" + text); });
    writer->flush();
    EXPECT_EQ(raw.bytes, bytesOf(L"before", encoding));
    return failure;
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
    EXPECT_EQ(bytesOf(L"a\nb\rc\r\nd\u2028\u2029\u0085e", encUTF8), "a\r\nb\r\nc\r\nd\r\n\r\n\r\ne");
    EXPECT_EQ(bytesOf(L"\n\r", encUTF8), "\r\n\r\n");
    EXPECT_EQ(bytesOf(L"\r\r\n", encUTF8), "\r\n\r\n");
    EXPECT_EQ(bytesOf(L"a\fb\vc", encUTF8), "a\fb\vc");
    MemoryWriter raw;
    std::unique_ptr<TextWriter> const writer{TextWriter::create(raw, encUTF8, false)};
    writer->writeLine(L"one\r");
    writer->writeLine(L"\ntwo");
    writer->flush();
    EXPECT_EQ(raw.bytes, "one\r\n\r\n\r\ntwo\r\n");
}

TEST(TextWriter, WhatIsNoCharacterIsAnError) {
    auto const message = [](wchar_t const* character) {
        return L"OrnError: The character "s + character + L" cannot be written to the file \"memory\".";
    };
    for (TextEncoding const encoding : {encMultibyte, encUTF8, encUTF16, encUTF16le, encUTF16be}) {
        EXPECT_EQ(failureOf(L"\xDC00 and behind", encoding), message(L"U+DC00"));
        EXPECT_EQ(failureOf(L"\xD83D", encoding), message(L"U+D83D"));
        EXPECT_EQ(failureOf(L"\xD83Dx", encoding), message(L"U+D83D"));
        EXPECT_EQ(failureOf(L"\xDE00\xD83D", encoding), message(L"U+DE00"));
        if constexpr (sizeof(wchar_t) == 4) {
            EXPECT_EQ(failureOf({static_cast<wchar_t>(0x110000)}, encoding), message(L"U+110000"));
        }
    }
    for (std::wstring const text : {L"\u4e00", L"\u0416", L"\u00e9", L"\xD83D\xDE00"}) {
        if (getWCS(getMBS(text)) == text) {
            EXPECT_EQ(bytesOf(text, encMultibyte), getMBS(text));
        } else {
            EXPECT_EQ(failureOf(text, encMultibyte).find(L"OrnError: The character U+"), 0u);
        }
    }
}

TEST(TextWriter, TheBufferGoesOutWhenItIsFullAndNotBefore) {
    MemoryWriter raw;
    std::unique_ptr<TextWriter> writer{TextWriter::create(raw, encUTF8, false)};
    writer->write(std::wstring(1022, L'x'));
    EXPECT_TRUE(raw.sizes.empty());
    writer->write(L"\xD83D\xDE00");  // four bytes for two left
    EXPECT_THAT(raw.sizes, ElementsAre(1022));
    writer->write(std::wstring(1020, L'y'));
    EXPECT_THAT(raw.sizes, ElementsAre(1022));
    writer->write(L"z");
    EXPECT_THAT(raw.sizes, ElementsAre(1022, 1024));
    EXPECT_EQ(raw.flushes, 0);
    writer->flush();
    EXPECT_THAT(raw.sizes, ElementsAre(1022, 1024, 1));
    EXPECT_EQ(raw.flushes, 1);
    writer->write(L"end");
    writer.reset();
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
    EXPECT_THAT(full.sizes, ElementsAre(1024, 6, 1001, 1001));
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
    } const cases[] = {
        {"old text", textCreate, encMultibyte, "x\r\n"},
        {"old text", textCreate, encUTF8, "\xEF\xBB\xBFx\r\n"},
        {"old text", static_cast<TextOpenMode>(7), encUTF16be, "\xFE\xFF\0x\0\r\0\n"s},
        {"", textAppend, encUTF16be, "\xFE\xFF\0x\0\r\0\n"s},
        {"", textAppend, encMultibyte, "x\r\n"},
        {"old", textAppend, encUTF8, "oldx\r\n"},
        {"\xEF\xBB\xBFold", textAppend, encUTF16le, "\xEF\xBB\xBFoldx\r\n"},
        {"\xFF\xFE", textAppend, encUTF8, "\xFF\xFEx\0\r\0\n\0"s},
        {"\xFE\xFF\0o"s, textAppend, encMultibyte, "\xFE\xFF\0o\0x\0\r\0\n"s},
        {"\xEF\xBB", textAppend, encUTF16le, "\xEF\xBBx\r\n"},
        {"old", textAppend, static_cast<TextEncoding>(9), "oldx\r\n"},
    };
    for (auto const& [before, mode, asked, after] : cases) {
        std::wstring const name = folder.put("file", before);
        std::unique_ptr<TextWriter> const writer{TextWriter::create(name, mode, asked)};
        writer->writeLine(L"x");
        writer->close();
        EXPECT_EQ(folder.get("file"), after) << testing::PrintToString(before);
        EXPECT_NO_THROW(writer->close());
        EXPECT_THROW(writer->write(L"y"), std::logic_error);
        EXPECT_THROW(writer->flush(), std::logic_error);
    }
    std::unique_ptr<TextWriter> { TextWriter::create(folder / L"new", textAppend, encUTF8) } -> write(L"n");
    EXPECT_EQ(folder.get("new"), "\xEF\xBB\xBFn");
    for (TextOpenMode const mode : {textCreate, textAppend})
        EXPECT_THROW(static_cast<void>(TextWriter::create(folder / L"no/such/folder", mode, encUTF8)), OrnError);
    for (int const value : {-1, 5, 100}) {
        auto const none = static_cast<TextEncoding>(value);
        MemoryWriter raw;
        EXPECT_EQ(TextWriter::create(raw, none, true), nullptr);
        for (TextOpenMode const mode : {textCreate, textAppend})
            EXPECT_EQ(TextWriter::create(folder / L"none", mode, none), nullptr);
        EXPECT_EQ(TextWriter::create(folder / L"new", textCreate, none), nullptr);
    }
    EXPECT_EQ(folder.get("new"), "\xEF\xBB\xBFn") << "it is touched by nobody";
    EXPECT_EQ(folder.count(), 2) << "nothing is made without an encoding";
}

TEST(TextWriter, WhatIsWrittenIsRead) {
    TemporaryFolder const folder;
    // Without a mark, in two goes, with the line ends of other systems.
    for (TextEncoding const encoding : {encUTF8, encUTF16, encUTF16le, encUTF16be}) {
        std::wstring const name = folder.put("unmarked", "");
        for (wchar_t const* text : {L"one \u20ac\r\r\n", L"\u2028t\fwo"}) {
            std::unique_ptr<TextWriter> const writer{TextWriter::create(name, textAppend, encoding, false, lineEndLF)};
            writer->writeLine(text);
        }
        std::string const bytes = folder.get("unmarked");
        EXPECT_EQ(bytes.size(), encoding == encUTF8 ? 16 : 28);
        EXPECT_EQ(std::ranges::count(bytes, '\r') + std::ranges::count(bytes, '\xEF'), 0);
        std::unique_ptr<TextReader> const reader{TextReader::create(name, encoding)};
        std::wstring read, all;
        while (reader->readLine(read)) all += read + L'|';
        EXPECT_EQ(all, L"one \u20ac||||t|wo|");
    }
    std::wstring const lines[] = {L"", L"plain", std::wstring(3000, L'w'),
                                  L"caf\u00e9 \u20ac \u65e5\u672c \xD83D\xDCD0", L"\xFEFF\v\x1F\xFFFF"};
    for (TextEncoding const encoding : {encUTF8, encUTF16, encUTF16le, encUTF16be}) {
        {
            std::unique_ptr<TextWriter> const writer{TextWriter::create(folder / L"file", textCreate, encoding)};
            for (auto const& line : lines) writer->writeLine(line);
        }
        std::unique_ptr<TextReader> const reader{TextReader::create(folder / L"file")};
        std::wstring read;
        for (auto const& line : lines) {
            EXPECT_TRUE(reader->readLine(read));
            EXPECT_EQ(read, line);
        }
        EXPECT_FALSE(reader->readLine(read));
    }
}

}
