#include "orn/text/CSVReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/TextReader.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace ORN;

namespace {

// As read, but tries once more when that fails.
bool readAgain(CSVReader& reader, std::vector<std::wstring>& fields) try {
    return reader.read(fields);
} catch (std::runtime_error const&) {
    return reader.read(fields);
}

// Rows as one text, "first-last:field|field|;" each.
std::wstring readAll(CSVReader& reader) {
    std::wstring rows;
    for (std::vector<std::wstring> fields; readAgain(reader, fields); rows += L';') {
        rows += std::to_wstring(reader.firstLine()) + L'-' + std::to_wstring(reader.lastLine()) + L':';
        for (std::wstring const& field : fields) rows += field + L'|';
    }
    return rows;
}

// The same text as a whole and through a file must give the same rows.
template <typename... Columns>
std::wstring rowsOf(std::wstring const& text, Columns const&... columns) {
    CSVReader whole{text, columns...};
    std::wstring const rows = readAll(whole);
    TemporaryFolder const folder;
    std::unique_ptr<TextReader> const lines{TextReader::create(folder.put("rows.csv", {text.begin(), text.end()}))};
    CSVReader reader{*lines, columns...};
    EXPECT_EQ(readAll(reader), rows) << testing::PrintToString(text);
    CSVReader part{std::wstring_view{text}, columns...};
    EXPECT_EQ(readAll(part), rows) << testing::PrintToString(text);
    std::vector<std::wstring> fields{L"kept?"};
    EXPECT_FALSE(reader.read(fields));
    EXPECT_TRUE(fields.empty());
    return rows;
}

TEST(CSVReader, RecordsAndTheirLines) {
    EXPECT_EQ(rowsOf(L"a,"), L"1-1:a||;");
    EXPECT_EQ(rowsOf(L"a\r\rb\r\nc\n\rd\f"), L"1-1:a|;2-2:;3-3:b|;4-4:c|;5-5:;6-6:d|;");
    EXPECT_EQ(rowsOf(L"\"one\ntwo\n\",x\nlast"), L"1-3:one\ntwo\n|x|;4-4:last|;");

    std::wstring const text = L"\"a\rb\r\nc\u2028\",d\r";  // of a whole text the line ends in quotes stay as they are
    CSVReader reader{text};
    EXPECT_EQ(readAll(reader), L"1-4:a\rb\r\nc\u2028|d|;");

    std::wstring const semicolons = L"a,b;c\n";
    CSVReader other{semicolons, {L';'}};  // the braces hold a delimiter, and no columns
    EXPECT_EQ(readAll(other), L"1-1:a,b|c|;");
}

TEST(CSVReader, Columns) {
    for (wchar_t const* text : {L"x,y,z\n1,2,3\n", L"x,y,z\r1,2,3\r", L"x,y,z\r\n1,2,3"})
        EXPECT_EQ(rowsOf(text, L"z,w,x"), L"2-2:3||1|;") << testing::PrintToString(text);
    EXPECT_EQ(rowsOf(L"\"x\ny\",z\n1,\"2\n\n\"\n\n7,8", L"\"x\ny\",z"), L"3-5:1|2\n\n|;6-6:||;7-7:7|8|;");
    EXPECT_EQ(rowsOf(L"x,y", L"x"), L"");

    std::wstring const text = L"a,b\n";
    CSVReader reader{text, L"b,c"};
    std::vector<bool> missing;
    std::vector<std::wstring> fields;
    for (bool const read : {false, true}) {
        EXPECT_FALSE(read && reader.read(fields));
        reader.missingColumns(missing);
        EXPECT_EQ(missing, (std::vector<bool>{!read, true}));
    }
}

TEST(CSVReader, WhatCannotBeReadHasItsLines) {
    std::wstring const open = L"a,b\nc,\"d\ne,f\n";
    CSVReader reader{open};
    std::vector<std::wstring> fields;
    EXPECT_TRUE(reader.read(fields));
    for (int time : {1, 2}) EXPECT_THROW(reader.read(fields), OrnError) << time;
    EXPECT_TRUE(reader.firstLine() == 2 && reader.lastLine() == 3);

    TemporaryFolder const folder;
    std::unique_ptr<TextReader> const lines{
        TextReader::create(folder.put("bad.csv", std::string{"\xEF\xBB\xBF"} + "a\n1\n2\xFF\n3\n"))};
    CSVReader bad{*lines, L"a"};
    EXPECT_TRUE(bad.read(fields));
    for (int time : {1, 2}) {
        EXPECT_THROW(bad.read(fields), OrnError);
        EXPECT_TRUE(bad.firstLine() == 3 && bad.lastLine() == 3) << time;
    }
}

TEST(CSVReader, AFailureThatPassesLeavesTheRowsAndTheirLines) {
    for (int call = 0; call < 26; ++call) {
        MemoryReader raw{"one\n\"two\nthree\"\nfour\n", 1, call};
        std::unique_ptr<TextReader> const lines{TextReader::create(raw, encUTF8)};
        CSVReader reader{*lines};
        EXPECT_EQ(readAll(reader), L"1-1:one|;2-3:two\nthree|;4-4:four|;") << call;
    }
}

}
