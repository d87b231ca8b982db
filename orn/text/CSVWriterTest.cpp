#include "orn/text/CSVWriter.h"

#include "orn/text/CSVReader.h"
#include "orn/text/TextReader.h"
#include "orn/text/TextWriter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

using namespace ORN;

namespace {

using Record = std::vector<std::wstring>;

std::vector<Record> readAll(CSVReader reader) {
    std::vector<Record> records;
    for (Record record; reader.read(record);) records.push_back(record);
    return records;
}

std::wstring written(Record const& record, CSVFormat format = {}) {
    std::wstring text;
    CSVWriter{text, format, L"\n"}.write(record);
    return text;
}

TEST(CSVWriter, QuotesAreWhereTheyHaveToBe) {
    EXPECT_EQ(written({}), L"\n");
    EXPECT_EQ(written({L""}), L"\"\"\n");
    EXPECT_EQ(written({L"", L""}), L",\n");
    EXPECT_EQ(written({L"a", L"b c", L"", L"1;5", L"\x2603\xD83D\xDE00"}), L"a,b c,,1;5,\x2603\xD83D\xDE00\n");
    EXPECT_EQ(written({L"a,b", L"x\"y", L"\"", L"l\nm"}), L"\"a,b\",\"x\"\"y\",\"\"\"\",\"l\nm\"\n");
    EXPECT_EQ(written({L" a", L"a\t", L"\x3000", L"\xFEFFz", L"a\v"}),
              L"\" a\",\"a\t\",\"\x3000\",\"\xFEFFz\",\"a\v\"\n");
    EXPECT_EQ(written({L" a", L"a,b", L"a;b"}, {L';', true}), L" a;a,b;\"a;b\"\n");
    for (wchar_t const end : {L'\f', L'\r', L'\x85', L'\x2028', L'\x2029'})
        EXPECT_EQ(written({std::wstring{L'a', end}}), (std::wstring{L'"', L'a', end, L'"', L'\n'}));
}

TEST(CSVWriter, NumbersAreWrittenInTheirShortestForm) {
    std::wstring text;
    CSVWriter rows{text};
    rows.field(L"x").field(0.1).field(-7).field(1e300).field(2.0 / 3, 3).endRecord();
    rows.field(1e300, 600).endRecord();
    EXPECT_TRUE(
        text.starts_with(L"x,0.1,-7,1e+300,0.667\r\n1000000000000000052504760255204420248704468581108159154915854115"));
    EXPECT_EQ(text.size(), 23u + 301 + 1 + 600 + 2);
}

TEST(CSVWriter, AFileHasTheTextWritersLineEnds) {
    TemporaryFolder const folder;
    std::wstring const name = folder / L"rows.csv";
    std::vector<Record> const records{{L"x", L"two\rlines"}, {}, {L"\x2603", L"\xFEFF,"}};
    std::unique_ptr<TextWriter> const lines{TextWriter::create(name, textCreate, encUTF8)};
    CSVWriter rows{*lines, {L';'}};
    for (Record const& record : records) rows.write(record);
    // Nothing of a record that failed is in the file, whether it would fit into a buffer or not.
    for (std::size_t const before : {0, 3, 900, 1100, 5000})
        EXPECT_NE(thrown([&] { rows.field(std::wstring(before, L';') + wchar_t{0xD800}).endRecord(); }), L"nothing");
    rows.field(L"next").endRecord();
    rows.field(std::wstring(3000, L'x')).endRecord();
    lines->close();
    std::unique_ptr<TextReader> const reader{TextReader::create(name)};
    EXPECT_EQ(readAll(CSVReader{*reader, CSVFormat{L';'}}),
              (std::vector<Record>{
                  {L"x", L"two\nlines"}, {}, {L"\x2603", L"\xFEFF,"}, {L"next"}, {std::wstring(3000, L'x')}}));
}

TEST(CSVWriter, WhatWouldBeTakenForSomethingElseIsRefused) {
    std::wstring text;
    for (wchar_t const delimiter : {L'"', L'\n', L'\f', L'\x2029', wchar_t{0xD800}, wchar_t{0xDC00}}) {
        CSVFormat const format{delimiter};
        std::wstring const refused = L"logic_error: illegal delimiter of CSV";
        EXPECT_EQ(thrown([&] { CSVWriter{text, format}; }), refused);
        EXPECT_EQ(thrown([&] { CSVReader{text, format}; }), refused);
        EXPECT_EQ(thrown([&] { static_cast<void>(CSVParser::create(L"a", format)); }), refused);
    }
    for (wchar_t const* end : {L"", L"\n\r", L"\r\n\n", L"x", L"\x2028"})
        EXPECT_EQ(thrown([&] { CSVWriter(text, {}, end); }), L"logic_error: illegal line end of CSV");
}

}
