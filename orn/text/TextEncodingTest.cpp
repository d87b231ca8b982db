#include "orn/text/TextEncoding.h"

#include "orn/foundation/Error.h"
#include "orn/text/TextReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace ORN;

static_assert(encMultibyte == 0 && encUTF8 == 1 && encUTF16 == 2 && encUTF16le == 3 && encUTF16be == 4);

namespace {

std::wstring firstLine(std::wstring const& file) {
    std::unique_ptr<TextReader> const reader{TextReader::create(file)};
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
        EXPECT_EQ(firstLine(folder.put("file", bytes)), line) << testing::PrintToString(bytes);
    }
}

}
