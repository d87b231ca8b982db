#include "orn/text/TextReader.h"

#include "orn/text/Encoding.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

using namespace ORN;
using namespace std::string_literals;

namespace {

constexpr TextEncoding unicode[] = {encUTF8, encUTF16, encUTF16le, encUTF16be};
constexpr wchar_t const* invalid = L"OrnError: The file \"memory\" holds text that is not valid in its encoding.";

std::string encode(std::wstring const& text, TextEncoding encoding) {
    if (encoding == encUTF8) return utf8(text);
    std::string bytes;
    for (wchar_t const unit : text) {
        bytes += static_cast<char>(encoding == encUTF16be ? unit >> 8 : unit);
        bytes += static_cast<char>(encoding == encUTF16be ? unit : unit >> 8);
    }
    return bytes;
}

// The lines, each with a bar behind it, and behind them the failure that ended them.
std::wstring linesOf(std::string const& bytes, TextEncoding encoding, std::size_t most = std::string::npos) {
    MemoryReader raw{bytes, most};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encoding)};
    std::wstring lines, line = L"old";
    std::wstring const failure = thrown([&] {
        while (reader->readLine(line)) lines += line + L'|';
    });
    return failure == L"nothing" ? lines : lines + failure;
}

TEST(TextReader, LineEndsInEveryEncoding) {
    struct {
        std::wstring text, lines;
    } const cases[] = {
        {L"", L""},
        {L"a", L"a|"},
        {L"\n", L"|"},
        {L"\r", L"|"},
        {L"\r\n", L"|"},
        {L"a\r\nb\rc\nd\n", L"a|b|c|d|"},
        {L"a\fb", L"a|b|"},
        {L"a\u0085b\u2028c\u2029", L"a|b|c|"},
        {L"a\n\rb", L"a||b|"},
        {L"a\r\r\nb", L"a||b|"},
        {L"a\r\u2028b", L"a||b|"},
        {L"a\r\u00e9\n", L"a|\u00e9|"},
        {L"a\vb\tc\x1F", L"a\vb\tc\x1F|"},
        {L"a\0b\n"s, L"a\0b|"s},
        {L"more than a block of plain text, and a line end at its end\r\nand \u20AC and \xD83D\xDE00!\r\n",
         L"more than a block of plain text, and a line end at its end|and \u20AC and \xD83D\xDE00!|"},
    };
    for (auto const& [text, lines] : cases) {
        for (std::size_t const most : {1, 3, 5000})
            for (TextEncoding const encoding : unicode)
                EXPECT_EQ(linesOf(encode(text, encoding), encoding, most), lines) << encoding;
        if (text.find_first_of(L"\u0085\u2028\u00e9\u20AC") == std::wstring::npos) {
            EXPECT_EQ(linesOf({text.begin(), text.end()}, encMultibyte), lines);
        }
    }
}

TEST(TextReader, CharactersAcrossTheEndOfTheBuffer) {
    for (TextEncoding const encoding : unicode) {
        std::size_t const units = encoding == encUTF8 ? 1024 : 512;
        for (std::wstring const piece :
             {L"\r\n", L"\r", L"\n", L"\u0085", L"\u2028", L"\u20AC", L"\xD83D\xDE00", L"\xD83D\xDE00\r\n\r\n"}) {
            std::wstring const apart = linesOf(encode(L"a" + piece + L"b", encoding), encoding);
            for (std::size_t before = units - 10; before != units + 1; ++before)
                for (std::size_t const most : {7, 5000}) {
                    std::wstring const head(before, L'x');
                    ASSERT_EQ(linesOf(encode(head + L"a" + piece + L"b", encoding), encoding, most), head + apart);
                }
        }
    }
}

TEST(TextReader, EveryCharacterThatIsNoLineEnd) {
    std::wstring text;
    for (unsigned int c = 0; c < 0x110000; ++c) {
        if (c == '\n' || c == '\f' || c == '\r' || c == 0x85 || c == 0x2028 || c == 0x2029 || c >> 11 == 0x1B) continue;
        if (c > 0xFFFF) text += static_cast<wchar_t>(0xD7C0 + (c >> 10));
        text += static_cast<wchar_t>(c > 0xFFFF ? 0xDC00 | (c & 0x3FF) : c);
    }
    for (TextEncoding const encoding : unicode) {
        EXPECT_TRUE(linesOf(encode(text, encoding), encoding) == text + L'|') << encoding;
    }
}

TEST(TextReader, LenientUTF8) {
    struct {
        std::string bytes;
        std::wstring lines;
    } const cases[] = {
        {"\x80\x80", L"\0|"s},                               // 80..BF lead two bytes
        {"\xBF\x81", L"\x7C1|"},                             // 1F << 6 | 01
        {"\xC3\x41", L"\xC1|"},                              // 03 << 6 | 01: any byte up to C0 may follow
        {"\xC3\xC0", L"\xC0|"},        {"\xC1\x81", L"A|"},  // overlong, and so up to four bytes
        {"\xE0\x81\x81", L"A|"},       {"\xF0\x80\x81\x81", L"A|"},
        {"\xE2\x02\x2C", L"\x20AC|"},  {"\xF4\x8F\xBF\xBF", L"\xDBFF\xDFFF|"},
        {"\xC3\n!", L"\xCA!|"},  // the LF is eaten: 03 << 6 | 0A
        {"\xC0\x8A!", L"|!|"},   // an overlong line end is one
        {"\xE0\x80\x8C!", L"|!|"},     {"\xF0\x80\x80\x8A!", L"|!|"},
        {"\x80\x0A!", L"|!|"},         {"\xE0\x82\x85!", L"|!|"},
        {"\xC0\x8D\xC0\x8A!", L"|!|"},
    };
    for (auto const& [bytes, lines] : cases)
        for (std::string const before : {"", "0123456789abcdef"})
            EXPECT_EQ(linesOf(before + bytes, encUTF8), std::wstring(before.begin(), before.end()) + lines)
                << testing::PrintToString(bytes);
}

TEST(TextReader, WhatIsNoTextIsAnError) {
    struct {
        TextEncoding encoding;
        std::string bytes;
        // clang-format off
    } const cases[] = {
        {encUTF8, "\xF8\x80\x80\x80\x80"}, {encUTF8, "\xFF"}, {encUTF8, "\xC3\xC1"}, {encUTF8, "\xE2\x82\xE9"},
        {encUTF8, "\xC3"}, {encUTF8, "\xE2\x82"}, {encUTF8, "\xF0\x9F\x98"}, {encUTF8, "\xED\xA0\x80"},
        {encUTF8, "\xED\xBF\xBF"}, {encUTF8, "\xF4\x90\x80\x80"}, {encUTF8, "\xF7\xBF\xBF\xBF"},
        {encUTF16le, "\x00"s}, {encUTF16le, "\x00\xD8"s}, {encUTF16le, "\x00\xD8\x41\x00"s},
        {encUTF16le, "\x00\xDC\x00\xD8"s}, {encUTF16le, "\x00\xD8\x00"s}, {encUTF16be, "\xDC\x00\x00\x41"s},
        {encUTF16be, "\xD8\x00\xD8\x00"s}, {encUTF16, "\x00\xDC"s},
    };  // clang-format on
    for (auto const& [encoding, bad] : cases)
        for (std::size_t const length : {1, 700}) {
            std::wstring const line(length, L'x');
            EXPECT_EQ(linesOf(encode(line + L'\n' + line, encoding) + bad, encoding), line + L'|' + invalid)
                << testing::PrintToString(bad);
        }
    MemoryReader raw{"bad\xFFmore\n"};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
    std::wstring line;
    for (int time : {1, 2})
        EXPECT_EQ(thrown([&] { static_cast<void>(reader->readLine(line)); }), invalid) << time << ": it stays there";
}

TEST(TextReader, TheMultibyteCodePageReadsAsItConverts) {
    std::string bytes = "plain text, long enough for a block\n";
    for (std::wstring const text : {L"caf\u00e9", L"\u20ac uro", L"\u65e5\u672c"})
        if (getWCS(getMBS(text)) == text) bytes += getMBS(text) + "\n";
    std::wstring expected = getWCS(bytes);
    for (wchar_t& unit : expected)
        if (unit == L'\n') unit = L'|';
    for (std::size_t const most : {1, 2, 3, 4000}) EXPECT_EQ(linesOf(bytes, encMultibyte, most), expected);
}

TEST(TextReader, TheRawReaderIsCalledOnceABuffer) {
    MemoryReader raw{std::string(20 * 1024, 'x')};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
    EXPECT_EQ(raw.calls, 0);
    std::wstring line;
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(raw.calls, 21);
    for (int const value : {-1, 5, 100}) EXPECT_EQ(TextReader::create(raw, static_cast<TextEncoding>(value)), nullptr);
}

TEST(TextReader, Files) {
    TemporaryFolder const folder;
    EXPECT_THROW(static_cast<void>(TextReader::create(folder / L"missing")), OrnError);
    EXPECT_EQ(TextReader::create(folder / L"missing", static_cast<TextEncoding>(5)), nullptr);
    std::unique_ptr<TextReader> const reader{TextReader::create(folder.put("file", "\xEF\xBB\xBFtw\xC3\xB6\r\nx\xFF"))};
    std::wstring line;
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(line, L"tw\u00f6");
    EXPECT_NE(thrown([&] { static_cast<void>(reader->readLine(line)); }).find(folder / L"file"), std::wstring::npos);
    reader->close();
    reader->close();
    EXPECT_NO_THROW(folder.removeAll());
}

}
