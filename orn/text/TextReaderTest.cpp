#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"
#include "tests/support/Cases.h"
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
std::wstring linesOf(TextReader& reader) {
    std::wstring lines, line = L"old";
    std::wstring const failure = thrown([&] {
        while (reader.readLine(line)) lines += line + L'|';
    });
    EXPECT_EQ(line, L"");
    return failure == L"nothing" ? lines : lines + failure;
}

using Reader = std::unique_ptr<TextReader>;

std::wstring linesOf(std::string const& bytes, TextEncoding encoding, std::size_t most = std::string::npos) {
    MemoryReader raw{bytes, most};
    return linesOf(*Reader{TextReader::create(raw, encoding)});
}

TEST(TextReader, LinesOfBytes) {
    Cases const texts{"orn/text/TextReaderTest.txt"};
    for (auto const& [text, lines] : texts.of<2>("line ends"))
        for (TextEncoding const encoding : unicode) EXPECT_EQ(linesOf(encode(text, encoding), encoding, 3), lines);
    for (auto const& [bytes, lines] : texts.of<2>("lenient"))
        EXPECT_EQ(linesOf({bytes.begin(), bytes.end()}, encUTF8), lines) << bytes;

    std::map<std::wstring, TextEncoding> const encodings = {
        {L"multibyte", encMultibyte}, {L"utf8", encUTF8}, {L"utf16", encUTF16}, {L"utf16be", encUTF16be}};
    for (auto const& [bytes, withoutMark, lines] : texts.of<3>("marks"))
        for (std::size_t const most : {1, 2, 100}) {  // bytes at once, as a pipe gives them
            MemoryReader raw{{bytes.begin(), bytes.end()}, most};
            EXPECT_EQ(linesOf(*Reader{TextReader::createByMark(raw, encodings.at(withoutMark))}), lines) << bytes;
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
    for (unsigned int value = 0; value < 0x110000; ++value)
        if (CodePoint const c = CodePoint::codePoint(value); !isSurrogate(value) && c.eolCode() == CodePoint::eolNone)
            text += std::wstring{c};
    for (TextEncoding const encoding : unicode)
        EXPECT_TRUE(linesOf(encode(text, encoding), encoding) == text + L'|') << encoding;
}

TEST(TextReader, WhatIsNoTextIsAnErrorThatStays) {
    for (auto const& [encoding, bad] :
         {std::pair{encUTF8, "\xFFmore\n"s}, {encUTF8, "\xED\xA0\x80"}, {encUTF16, "\x00\xDC"s}})
        for (std::size_t const length : {1, 700}) {
            std::wstring const text(length, L'x');
            MemoryReader raw{encode(text + L'\n' + text, encoding) + bad};
            Reader const reader{TextReader::create(raw, encoding)};
            EXPECT_EQ(linesOf(*reader), text + L'|' + invalid);
            EXPECT_EQ(linesOf(*reader), invalid);
        }
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
    Reader const reader{TextReader::create(raw, encUTF8)};
    EXPECT_EQ(raw.calls, 0);
    linesOf(*reader);
    EXPECT_EQ(raw.calls, 22);
    for (int const value : {-1, 5, 100}) EXPECT_EQ(TextReader::create(raw, static_cast<TextEncoding>(value)), nullptr);
}

// It fails in the midst of a line, a character or a line end.
TEST(TextReader, ALineThatAFailureInterruptedIsReadWhole) {
    std::string const bytes = "first\r\nsecond \xE2\x82\xAC\r\rfourth\n\nlast\r";
    for (int call = 0; call <= static_cast<int>(bytes.size()); ++call) {
        MemoryReader raw{bytes, 1, call};
        Reader const reader{TextReader::create(raw, encUTF8)};
        std::wstring const before = linesOf(*reader), failure = L"runtime_error: broken";
        ASSERT_TRUE(before.ends_with(failure)) << call;
        EXPECT_EQ(before.substr(0, before.size() - failure.size()) + linesOf(*reader),
                  L"first|second \u20ac||fourth||last|");
    }
}

TEST(TextReader, Files) {
    TemporaryFolder const folder;
    EXPECT_THROW(static_cast<void>(TextReader::create(folder / L"missing")), OrnError);
    EXPECT_EQ(TextReader::create(folder / L"missing", static_cast<TextEncoding>(5)), nullptr);
    Reader const reader{TextReader::create(folder.put("file", "\xEF\xBB\xBFtw\xC3\xB6\r\nx\xFF"))};
    std::wstring const read = linesOf(*reader);
    EXPECT_TRUE(read.starts_with(L"tw\u00f6|OrnError") && read.find(folder / L"file") != read.npos) << read;
    reader->close();
    reader->close();
    EXPECT_NO_THROW(folder.removeAll());
}

}
