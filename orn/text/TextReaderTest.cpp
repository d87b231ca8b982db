#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <memory>

using namespace ORN;
using namespace std::string_literals;
using Lines = std::vector<std::wstring>;

namespace {

constexpr TextEncoding unicode[] = {encUTF8, encUTF16, encUTF16le, encUTF16be};

std::string encode(std::u32string const& text, TextEncoding encoding) {
    std::string bytes;
    auto const byte = [&bytes](char32_t value) { bytes += static_cast<char>(value & 0xFF); };
    auto const unit = [&](char32_t value) {
        byte(encoding == encUTF16be ? value >> 8 : value);
        byte(encoding == encUTF16be ? value : value >> 8);
    };
    for (char32_t const c : text) {
        if (encoding != encUTF8) {
            if (c > 0xFFFF) unit(0xD7C0 + (c >> 10));
            unit(c > 0xFFFF ? 0xDC00 | (c & 0x3FF) : c);
        } else if (c < 0x80) {
            byte(c);
        } else {
            int const more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            byte((more == 1 ? 0xC0u : more == 2 ? 0xE0u : 0xF0u) | c >> 6 * more);
            for (int i = more - 1; i >= 0; --i) byte(0x80 | (c >> 6 * i & 0x3F));
        }
    }
    return bytes;
}

std::wstring units(std::u32string const& text) {
    std::wstring wide;
    for (char32_t const c : text) {
        if (c > 0xFFFF) wide += static_cast<wchar_t>(0xD7C0 + (c >> 10));
        wide += static_cast<wchar_t>(c > 0xFFFF ? 0xDC00 | (c & 0x3FF) : c);
    }
    return wide;
}

Lines readAll(TextReader& reader) {
    Lines lines;
    for (std::wstring line = L"old"; reader.readLine(line);) lines.push_back(line);
    return lines;
}

Lines linesOf(std::string const& bytes, TextEncoding encoding, std::size_t most = std::string::npos) {
    MemoryReader raw{bytes, most};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encoding)};
    return readAll(*reader);
}

// The lines before the first failure, and the failure's text as the last one.
Lines linesAndFailure(std::string const& bytes, TextEncoding encoding) {
    MemoryReader raw{bytes};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encoding)};
    Lines lines;
    try {
        for (std::wstring line; reader->readLine(line);) lines.push_back(line);
    } catch (OrnError const& error) {
        lines.push_back(error.wWhat());
    }
    return lines;
}

TEST(TextReader, LineEndsInEveryEncoding) {
    struct Case {
        std::u32string text;
        Lines lines;
    };
    Case const cases[] = {
        {U"", {}},
        {U"a", {L"a"}},
        {U"\n", {L""}},
        {U"\r", {L""}},
        {U"\r\n", {L""}},
        {U"a\r\nb", {L"a", L"b"}},
        {U"a\rb", {L"a", L"b"}},
        {U"a\nb\n", {L"a", L"b"}},
        {U"a\fb", {L"a", L"b"}},
        {U"a\x85"
         U"b",
         {L"a", L"b"}},
        {U"a\x2028"
         U"b\x2029",
         {L"a", L"b"}},
        {U"a\n\rb", {L"a", L"", L"b"}},
        {U"a\r\r\nb", {L"a", L"", L"b"}},
        {U"a\r\x2028"
         U"b",
         {L"a", L"", L"b"}},
        {U"a\r\xE9\n", {L"a", L"\u00e9"}},
        {U"a\vb\tc\x1F", {L"a\vb\tc\x1F"}},
        {U"more than a block of plain text, and a line end at its end\r\nand then \x20AC and \x1F600!\r\n",
         {L"more than a block of plain text, and a line end at its end", L"and then \x20AC and \xD83D\xDE00!"}},
    };
    for (auto const& [text, lines] : cases) {
        for (TextEncoding const encoding : unicode) {
            for (std::size_t const most : {1, 3, 5000}) {
                EXPECT_EQ(linesOf(encode(text, encoding), encoding, most), lines) << encoding;
            }
        }
        if (text.find_first_of(U"\x85\x2028\x2029\xE9\x20AC") == std::u32string::npos) {
            EXPECT_EQ(linesOf({text.begin(), text.end()}, encMultibyte), lines);
        }
    }
    EXPECT_EQ(linesOf("a\0b\n"s, encMultibyte), Lines{L"a\0b"s});
    EXPECT_EQ(linesOf("a\0b\n"s, encUTF8), Lines{L"a\0b"s});
}

TEST(TextReader, CharactersAcrossTheEndOfTheBuffer) {
    std::u32string const pieces[] = {U"\r\n",   U"\r",     U"\n",      U"\x85",
                                     U"\x2028", U"\x20AC", U"\x1F600", U"\x1F600\r\n\r\n"};
    for (TextEncoding const encoding : unicode) {
        std::size_t const width = encoding == encUTF8 ? 1 : 2;
        for (std::u32string const& piece : pieces) {
            Lines const apart = linesOf(encode(U"a" + piece + U"b", encoding), encoding);
            for (std::size_t before = 1024 / width - 9; before != 1024 / width + 2; ++before) {
                Lines expected = apart;
                expected.front().insert(0, std::wstring(before - 1, L'x'));
                std::u32string const text = std::u32string(before - 1, U'x') + U"a" + piece + U"b";
                ASSERT_EQ(linesOf(encode(text, encoding), encoding), expected) << encoding << ": " << before;
                ASSERT_EQ(linesOf(encode(text, encoding), encoding, 7), expected) << encoding << ": " << before;
            }
        }
    }
}

TEST(TextReader, EveryCharacterThatIsNoLineEnd) {
    std::u32string text;
    for (char32_t c = 0; c < 0x110000; ++c) {
        if ((c & ~0x7FFu) == 0xD800 || (c >= 0x0A && c <= 0x0D && c != 0x0B)) continue;
        if (c != 0x85 && c != 0x2028 && c != 0x2029) text += c;
    }
    for (TextEncoding const encoding : unicode) {
        Lines const lines = linesOf(encode(text, encoding), encoding);
        ASSERT_EQ(lines.size(), 1u) << encoding;
        EXPECT_TRUE(lines[0] == units(text)) << encoding;
    }
}

TEST(TextReader, LenientUTF8) {
    struct Case {
        std::string bytes;
        std::wstring line;
    };
    Case const cases[] = {
        {"\x80\x80"s, L"\0"s},   // 80..BF lead two bytes
        {"\xBF\x81", L"\x7C1"},  // 1F << 6 | 01
        {"\xC3"
         "A",
         L"\xC1"},  // 03 << 6 | 01: any byte up to C0 may follow
        {"\xC3\xC0", L"\xC0"},
        {"\xC1\x81", L"A"},  // overlong
        {"\xE0\x81\x81", L"A"},
        {"\xF0\x80\x81\x81", L"A"},
        {"\xE2"
         "\x02\x2C",
         L"\x20AC"},
        {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF"},
        {"\xC3\n!", L"\xCA!"},  // the LF is eaten: 03 << 6 | 0A
    };
    for (auto const& [bytes, line] : cases) {
        EXPECT_EQ(linesOf(bytes, encUTF8), Lines{line}) << testing::PrintToString(bytes);
        EXPECT_EQ(linesOf("0123456789abcdef" + bytes, encUTF8), Lines{L"0123456789abcdef" + line});
    }
    for (char const* end : {"\xC0\x8A", "\xE0\x80\x8C", "\xF0\x80\x80\x8A", "\x80\x0A", "\xE0\x82\x85"}) {
        EXPECT_EQ(linesOf("a"s + end + "b", encUTF8), (Lines{L"a", L"b"})) << "an overlong line end is one";
    }
    EXPECT_EQ(linesOf("a\xC0\x8D\xC0\x8A"
                      "b",
                      encUTF8),
              (Lines{L"a", L"b"}));
}

TEST(TextReader, WhatIsNoTextIsAnError) {
    std::wstring const failure = L"The file \"memory\" holds text that is not valid in its encoding.";
    struct Case {
        TextEncoding encoding;
        std::string bytes;
    };
    Case const cases[] = {
        {encUTF8, "\xF8\x80\x80\x80\x80"},
        {encUTF8, "\xFF"},
        {encUTF8, "\xC3\xC1"},
        {encUTF8, "\xE2\x82\xE9"},
        {encUTF8, "\xC3"},
        {encUTF8, "\xE2\x82"},
        {encUTF8, "\xF0\x9F\x98"},
        {encUTF8, "\xED\xA0\x80"},
        {encUTF8, "\xED\xBF\xBF"},
        {encUTF8, "\xF4\x90\x80\x80"},
        {encUTF8, "\xF7\xBF\xBF\xBF"},
        {encUTF16le, "\x00"s},
        {encUTF16le, "\x00\xD8"s},
        {encUTF16le, "\x00\xD8\x41\x00"s},
        {encUTF16le, "\x00\xDC\x00\xD8"s},
        {encUTF16le, "\x00\xD8\x00"s},
        {encUTF16be, "\xDC\x00\x00\x41"s},
        {encUTF16be, "\xD8\x00\xD8\x00"s},
        {encUTF16, "\x00\xDC"s},
    };
    for (auto const& [encoding, bad] : cases) {
        std::string const good = encode(U"one\ntwo", encoding);
        EXPECT_EQ(linesAndFailure(good + bad, encoding), (Lines{L"one", failure})) << testing::PrintToString(bad);
        std::string const longer = encode(std::u32string(700, U'x') + U"\n" + std::u32string(700, U'y'), encoding);
        EXPECT_EQ(linesAndFailure(longer + bad, encoding), (Lines{std::wstring(700, L'x'), failure}))
            << testing::PrintToString(bad);
    }
}

TEST(TextReader, AnErrorStaysWhereItIs) {
    MemoryReader raw{"ok\nbad\xFFmore\n"};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
    std::wstring line;
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_THROW(reader->readLine(line), OrnError);
    EXPECT_THROW(reader->readLine(line), OrnError);
}

TEST(TextReader, TheMultibyteCodePageReadsAsItConverts) {
    std::string bytes = "plain text, long enough for a block\n";
    for (std::wstring const text : {L"caf\u00e9", L"\u20ac uro", L"\u65e5\u672c"}) {
        if (getWCS(getMBS(text)) == text) bytes += getMBS(text) + "\r\n";
    }
    for (std::size_t const most : {1, 2, 3, 4000}) {
        Lines const lines = linesOf(bytes, encMultibyte, most);
        std::wstring joined;
        for (auto const& line : lines) joined += line + (joined.empty() ? L"\n" : L"\r\n");
        EXPECT_EQ(joined, getWCS(bytes));
    }
}

TEST(TextReader, ValuesThatAreNoEncodingGiveNull) {
    MemoryReader raw{"text"};
    for (int const value : {-1, 5, 100}) EXPECT_EQ(TextReader::create(raw, static_cast<TextEncoding>(value)), nullptr);
}

TEST(TextReader, TheRawReaderIsCalledOnceABuffer) {
    std::string bytes;
    while (bytes.size() < 20 * 1024) bytes += "a line of thirty-two bytes here\n";
    MemoryReader raw{bytes};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
    EXPECT_EQ(raw.calls, 0);
    EXPECT_EQ(readAll(*reader).size(), 640u);
    EXPECT_EQ(raw.calls, 21);
}

TEST(TextReader, Files) {
    TemporaryFolder const folder;
    EXPECT_THROW(TextReader::create(folder / L"missing"), OrnError);

    std::unique_ptr<TextReader> const reader{
        TextReader::create(folder.put("file", "\xEF\xBB\xBFone\r\ntw\xC3\xB6\r\nx\xFF"))};
    std::wstring line;
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(line, L"one");
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(line, L"tw\u00f6");
    try {
        reader->readLine(line);
        ADD_FAILURE();
    } catch (OrnError const& error) {
        EXPECT_NE(std::wstring{error.wWhat()}.find(folder / L"file"), std::wstring::npos);
    }
    reader->close();
    reader->close();
    EXPECT_NO_THROW(folder.removeAll());
}

}
