#include "orn/text/TextEncoding.h"

#include "orn/text/TextReader.h"
#include "tests/support/MemoryStreams.h"

#include <gtest/gtest.h>

#include <memory>

using namespace ORN;
using namespace std::string_literals;

namespace {

TEST(TextEncoding, AMarkNamesItAndOtherFilesAreReadAsAsked) {
    struct {
        std::string bytes;
        TextEncoding withoutMark;
        std::wstring line;
    } const cases[] = {
        {"", encUTF8, L"(no line)"},
        {"\xEF\xBB\xBF", encUTF16, L"(no line)"},
        {"\xFF\xFE", encUTF8, L"(no line)"},
        {"\xEF\xBB\xBF\xC3\xA9", encUTF16be, L"\u00e9"},
        {"\xFF\xFE\x41\x00"s, encUTF16be, L"A"},
        {"\xFE\xFF\x00\x41"s, encMultibyte, L"A"},
        {"\xFF\xFE\xFF\xFE"s, encMultibyte, L"\xFEFF"},
        {"\xFF\xFE\x00\x00"s, encUTF8, std::wstring(1, L'\0')},
        {"ABCDEF", encMultibyte, L"ABCDEF"},
        {"\x20\xC3\x9F\x0A", encUTF8, L" \u00df"},
        {"\x20\xC3\x9F\x0A", encUTF16, L"\xC320\x0A9F"},
        {"\x20\xC3\x9F\x0A", encUTF16be, L"\x20C3\x9F0A"},
    };
    for (auto const& [bytes, withoutMark, expected] : cases)
        for (std::size_t const most : {1, 2, 100}) {  // bytes at once, as a pipe gives them
            MemoryReader raw{bytes, most};
            std::unique_ptr<TextReader> const reader{TextReader::createByMark(raw, withoutMark)};
            std::wstring line;
            EXPECT_EQ(reader->readLine(line) ? line : L"(no line)", expected) << testing::PrintToString(bytes);
        }
}

}
