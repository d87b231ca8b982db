#include "orn/text/TextEncoding.h"

#include "orn/foundation/Error.h"
#include "orn/text/TextReader.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace ORN;

static_assert(encMultibyte == 0 && encUTF8 == 1 && encUTF16 == 2 && encUTF16le == 3 && encUTF16be == 4);

namespace {

std::wstring firstLine(TextReader* reader) {
    std::unique_ptr<TextReader> const owner{reader};
    std::wstring line;
    return reader->readLine(line) ? line : L"(no line)";
}

TEST(TextEncoding, AFilesFirstBytesNameIt) {
    TemporaryFolder const folder;
    using namespace std::string_literals;
    struct {
        std::string bytes;
        std::wstring line;
    } const cases[] = {
        {"", L"(no line)"},
        {"\xEF\xBB\xBF", L"(no line)"},
        {"\xFF\xFE", L"(no line)"},
        {"\xFE\xFF", L"(no line)"},
        {"\xEF\xBB\xBF\xC3\xA9", L"\u00e9"},
        {"\xFF\xFE\x41\x00"s, L"A"},
        {"\xFE\xFF\x00\x41"s, L"A"},
        {"\xFF\xFE\xFF\xFE"s, L"\xFEFF"},
        {"\xFF\xFE\x00\x00"s, std::wstring(1, L'\0')},
        {"A", L"A"},
        {"ABCDEF", L"ABCDEF"},
    };
    for (auto const& [bytes, line] : cases) {
        std::wstring const file = folder.put("file", bytes);
        EXPECT_EQ(firstLine(TextReader::create(file)), line) << testing::PrintToString(bytes);
        for (std::size_t const most : {1, 2, 100}) {  // as a pipe gives them
            MemoryReader raw{bytes, most};
            EXPECT_EQ(firstLine(TextReader::createByMark(raw, encMultibyte)), line) << testing::PrintToString(bytes);
        }
        if (bytes.empty() || static_cast<unsigned char>(bytes[0]) < 0x80) continue;
        for (TextEncoding const other : {encUTF8, encUTF16be})
            EXPECT_EQ(firstLine(TextReader::create(file, other)), line);
    }
    std::wstring const unmarked = folder.put("file", "\x20\xC3\x9F\x0A");
    EXPECT_EQ(firstLine(TextReader::create(unmarked, encUTF8)), L" \u00df");
    EXPECT_EQ(firstLine(TextReader::create(unmarked, encUTF16)), L"\xC320\x0A9F");
    EXPECT_EQ(firstLine(TextReader::create(unmarked, encUTF16be)), L"\x20C3\x9F0A");
}

}
