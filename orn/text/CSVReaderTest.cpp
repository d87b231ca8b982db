#include "orn/text/CSVReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/TextReader.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

using namespace ORN;

namespace {

struct Row {
    std::uint64_t first, last;
    std::vector<std::wstring> fields;

    friend bool operator==(Row const&, Row const&) = default;
    friend void PrintTo(Row const& row, std::ostream* out) {
        *out << row.first << "-" << row.last << ": " << testing::PrintToString(row.fields);
    }
};
using Rows = std::vector<Row>;

Rows readAll(CSVReader& reader) {
    Rows rows;
    for (std::vector<std::wstring> fields; reader.read(fields);) {
        rows.push_back({reader.firstLine(), reader.lastLine(), fields});
    }
    return rows;
}

// The same text as a whole and through a file must give the same rows.
template <typename... Columns>
Rows rowsOf(std::wstring const& text, Columns const&... columns) {
    CSVReader whole{text, columns...};
    Rows const rows = readAll(whole);
    TemporaryFolder const folder;
    std::unique_ptr<TextReader> const lines{TextReader::create(folder.put("rows.csv", {text.begin(), text.end()}))};
    CSVReader reader{*lines, columns...};
    EXPECT_EQ(readAll(reader), rows) << testing::PrintToString(text);
    std::vector<std::wstring> fields{L"kept?"};
    EXPECT_FALSE(reader.read(fields));
    EXPECT_TRUE(fields.empty());
    return rows;
}

TEST(CSVReader, RecordsAndTheirLines) {
    struct Case {
        wchar_t const* text;
        Rows rows;
    };
    Case const cases[] = {
        {L"", {}},
        {L"a,b", {{1, 1, {L"a", L"b"}}}},
        {L"a,b\n", {{1, 1, {L"a", L"b"}}}},
        {L"a,", {{1, 1, {L"a", L""}}}},
        {L"a\rb\rc", {{1, 1, {L"a"}}, {2, 2, {L"b"}}, {3, 3, {L"c"}}}},
        {L"a\r\rb\r", {{1, 1, {L"a"}}, {2, 2, {}}, {3, 3, {L"b"}}}},
        {L"a\r\nb\n\rc\f", {{1, 1, {L"a"}}, {2, 2, {L"b"}}, {3, 3, {}}, {4, 4, {L"c"}}}},
        {L"\"one\ntwo\n\",x\nlast", {{1, 3, {L"one\ntwo\n", L"x"}}, {4, 4, {L"last"}}}},
    };
    for (auto const& [text, rows] : cases) EXPECT_EQ(rowsOf(text), rows) << testing::PrintToString(text);
}

TEST(CSVReader, Columns) {
    for (wchar_t const* text : {L"x,y,z\n1,2,3\n", L"x,y,z\r1,2,3\r", L"x,y,z\r\n1,2,3"}) {
        EXPECT_EQ(rowsOf(text, L"z,w,x"), (Rows{{2, 2, {L"3", L"", L"1"}}})) << testing::PrintToString(text);
    }
    EXPECT_EQ(rowsOf(L"\"x\ny\",z\n1,\"2\n\n\"\n\n7,8", L"\"x\ny\",z"),
              (Rows{{3, 5, {L"1", L"2\n\n"}}, {6, 6, {L"", L""}}, {7, 7, {L"7", L"8"}}}));
    EXPECT_EQ(rowsOf(L"x,y", L"x"), Rows{});

    std::wstring const text = L"a,b\n";
    CSVReader reader{text, L"b,c"};
    std::vector<bool> missing;
    reader.missingColumns(missing);
    EXPECT_EQ(missing, (std::vector<bool>{true, true}));
    std::vector<std::wstring> fields;
    EXPECT_FALSE(reader.read(fields));
    reader.missingColumns(missing);
    EXPECT_EQ(missing, (std::vector<bool>{false, true}));
}

TEST(CSVReader, LineEndsInQuotesOfAWholeTextStayAsTheyAre) {
    std::wstring const text = L"\"a\rb\r\nc\x2028\",d\r";
    CSVReader reader{text};
    EXPECT_EQ(readAll(reader), (Rows{{1, 4, {L"a\rb\r\nc\x2028", L"d"}}}));
}

TEST(CSVReader, AQuoteLeftOpenIsAnError) {
    std::wstring const text = L"a,b\nc,\"d\ne,f\n";
    CSVReader reader{text};
    std::vector<std::wstring> fields;
    EXPECT_TRUE(reader.read(fields));
    EXPECT_THROW(reader.read(fields), OrnError);
    EXPECT_EQ(reader.firstLine(), 2u);
    EXPECT_EQ(reader.lastLine(), 3u);
    EXPECT_THROW(reader.read(fields), OrnError);
}

TEST(CSVReader, ALineThatCannotBeReadHasItsNumber) {
    TemporaryFolder const folder;
    std::unique_ptr<TextReader> const lines{TextReader::create(folder.put("bad.csv",
                                                                          "\xEF\xBB\xBF"
                                                                          "a\n1\n2\xFF\n3\n"))};
    CSVReader reader{*lines, L"a"};
    std::vector<std::wstring> fields;
    EXPECT_TRUE(reader.read(fields));
    EXPECT_THROW(reader.read(fields), OrnError);
    EXPECT_EQ(reader.firstLine(), 3u);
    EXPECT_EQ(reader.lastLine(), 3u);
}

}
