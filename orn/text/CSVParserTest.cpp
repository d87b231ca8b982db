#include "orn/text/CSVParser.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>

using namespace ORN;
using testing::ElementsAre;
using Record = std::vector<std::wstring>;
using Records = std::vector<Record>;

namespace {

// Feeds pieces by the protocol. Within a piece an empty text stands for the same text again: it goes on in the piece, and
// it is no text behind a CR that ends the piece.
Records parsePieces(CSVParser& parser, std::vector<std::wstring> const& pieces) {
    std::wstring const empty;
    Records records;
    Record fields;
    for (auto const& piece : pieces) {
        for (bool more = parser.parse(fields, piece); more; more = parser.parse(fields, empty)) {
            records.push_back(fields);
        }
    }
    return records;
}

Records parseWhole(std::wstring const& text) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    return parsePieces(*parser, {text});
}

std::vector<std::wstring> cut(std::wstring const& text, std::size_t size) {
    std::vector<std::wstring> pieces;
    for (std::size_t i = 0; i < text.size(); i += size) pieces.push_back(text.substr(i, size));
    return pieces;
}

struct Case {
    wchar_t const* text;
    Records records;
};

// Without lone CRs, which have their own rule.
Case const cases[] = {
    {L"", {}},
    {L"a,b,c\n", {{L"a", L"b", L"c"}}},
    {L"a,b", {}},
    {L" a , b \n", {{L"a", L"b"}}},
    {L"\t\x00A0\xFEFF\x3000 a b\x2003\x0B\n", {{L"a b"}}},
    {L"\n", {{}}},
    {L" \t\n", {{}}},
    {L",\n", {{L"", L""}}},
    {L"a,\n", {{L"a", L""}}},
    {L"a, \n", {{L"a", L""}}},
    {L",a\n", {{L"", L"a"}}},
    {L"a,,\"b\" ,\"\"\n", {{L"a", L"", L"b", L""}}},
    {L"\"a\" \n", {{L"a"}}},
    {L"\"\"\n", {{L""}}},
    {L"\"\",\n", {{L"", L""}}},
    {L"\"a,b\",c\n", {{L"a,b", L"c"}}},
    {L"\"a\"\"b\"\n", {{L"a\"b"}}},
    {L"\"\"\"\"\n", {{L"\""}}},
    {L"\"\"\"\"\"\"\n", {{L"\"\""}}},
    {L"\" a \"\n", {{L" a "}}},
    {L"  \" a \"  ,b\n", {{L" a ", L"b"}}},
    {L"\"a\nb\"\n", {{L"a\nb"}}},
    {L"\"a\r\nb\rc\x2028\"\n", {{L"a\r\nb\rc\x2028"}}},
    {L"a\"b\"\n", {{L"a\"b\""}}},
    {L"\"a\"x\n\"\n", {{L"a\"x\n"}}},  // a quoted field again
    {L"\"a\"x\"\n", {{L"a\"x"}}},
    {L"\"a\" x\"\n", {{L"a\" x"}}},
    {L"\"a\" \"\n", {{L"a"}}},  // blanks, then a quote that closes it again
    {L"\"a\" \"\"\n\"\n", {{L"a\" \"\n"}}},
    {L"a\nb\fc\x0085"
     L"d\x2028"
     L"e\x2029",
     {{L"a"}, {L"b"}, {L"c"}, {L"d"}, {L"e"}}},
    {L"a\r\nb\r\n", {{L"a"}, {L"b"}}},
    {L"a\r\n\r\nb,\r\n", {{L"a"}, {}, {L"b", L""}}},
    {L"\xD83D\xDE00,\xD800\n", {{L"\xD83D\xDE00", L"\xD800"}}},
    {L"a,b\n\"open\n", {{L"a", L"b"}}},
    {L"long field beyond a block of units,second one as long as that\n",
     {{L"long field beyond a block of units", L"second one as long as that"}}},
};

TEST(CSVParser, TheRules) {
    for (auto const& [text, records] : cases) {
        EXPECT_EQ(parseWhole(text), records) << testing::PrintToString(text);
    }
}

TEST(CSVParser, PiecesOfAnySizeGiveTheSameRecords) {
    for (auto const& [text, records] : cases) {
        std::wstring const whole = text;
        for (std::size_t size = 1; size < whole.size(); ++size) {
            std::unique_ptr<CSVParser> const parser{CSVParser::create()};
            EXPECT_EQ(parsePieces(*parser, cut(whole, size)), records)
                << testing::PrintToString(text) << " by " << size;
        }
    }
}

TEST(CSVParser, ThePartialRecordStaysInsideTheParser) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    std::wstring const first = L"a , \"b", second = L"c\",d\n";
    Record some{L"left over"}, other{L"from", L"before", L"and", L"more"};
    EXPECT_FALSE(parser->parse(some, first));
    EXPECT_TRUE(parser->parse(other, second));
    EXPECT_THAT(other, ElementsAre(L"a", L"bc", L"d"));
    EXPECT_FALSE(parser->parse(some, second));
}

TEST(CSVParser, BehindALoneReturnTheNextTextIsTakenFromItsStart) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    Record fields;
    std::wstring const text = L"a\rb\rc";
    EXPECT_TRUE(parser->parse(fields, text));
    EXPECT_THAT(fields, ElementsAre(L"a"));
    EXPECT_TRUE(parser->parse(fields, text)) << "the same text again is the same record again";
    EXPECT_THAT(fields, ElementsAre(L"a"));
    std::wstring const behind = L"b\rc", last = L"c", empty, feed = L"\n", more = L"d\n";
    EXPECT_TRUE(parser->parse(fields, behind));
    EXPECT_THAT(fields, ElementsAre(L"b"));
    EXPECT_FALSE(parser->parse(fields, empty));
    EXPECT_FALSE(parser->parse(fields, last));
    EXPECT_TRUE(parser->parse(fields, feed));
    EXPECT_THAT(fields, ElementsAre(L"c"));
    EXPECT_FALSE(parser->parse(fields, feed));

    std::wstring const atEnd = L"x\r", split = L"\ny\n";
    EXPECT_TRUE(parser->parse(fields, atEnd));
    EXPECT_THAT(fields, ElementsAre(L"x"));
    EXPECT_FALSE(parser->parse(fields, empty));
    EXPECT_TRUE(parser->parse(fields, split)) << "the LF belongs to the CR, though an empty text came between";
    EXPECT_THAT(fields, ElementsAre(L"y"));
    EXPECT_FALSE(parser->parse(fields, split));
    EXPECT_TRUE(parser->parse(fields, more));
    EXPECT_THAT(fields, ElementsAre(L"d"));
}

TEST(CSVParser, RandomTextsReadTheSameWholeAndUnitByUnit) {
    std::mt19937 random{20};
    wchar_t const units[] = L"aab,,\"\" \n\x3000\x2029\x0410z";
    for (int round = 0; round < 3000; ++round) {
        std::wstring text;
        for (std::size_t length = random() % 60; length != 0; --length) text += units[random() % 14];
        std::unique_ptr<CSVParser> const parser{CSVParser::create()};
        ASSERT_EQ(parsePieces(*parser, cut(text, 1)), parseWhole(text)) << testing::PrintToString(text);
    }
}

Records parseHeaded(std::wstring const& columns, std::vector<std::wstring> const& pieces,
                    std::vector<bool> const& expectMissing) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create(columns)};
    Records const records = parsePieces(*parser, pieces);
    std::vector<bool> missing(7, true);
    parser->missingColumns(missing);
    EXPECT_EQ(missing, expectMissing);
    return records;
}

TEST(CSVParser, ColumnsByName) {
    struct HeadedCase {
        wchar_t const* columns;
        std::vector<std::wstring> pieces;
        std::vector<bool> missing;
        Records records;
    };
    HeadedCase const headed[] = {
        {L"b,z", {L"a,b,c\n1,2,3\n"}, {false, true}, {{L"2", L""}}},
        {L"c,a",
         {L"a,b,c\n1,2,3\n4,5\n\n6,7,8,9\n"},
         {false, false},
         {{L"3", L"1"}, {L"", L"4"}, {L"", L""}, {L"8", L"6"}}},
        {L" \"x,y\" , b", {L"\"x,y\",B\r\n1,2\r\n"}, {false, true}, {{L"1", L""}}},
        {L"a,a,b", {L"b,a,a\n1,2,3\n4,5,6\n"}, {false, false, false}, {{L"2", L"2", L"1"}, {L"5", L"5", L"4"}}},
        {L"a", {L"a"}, {true}, {}},
        {L"a", {L"\"a", L"\"\n", L"1\n"}, {false}, {{L"1"}}},
        {L"\"a", {L"x\n"}, {true}, {}},
        {L"", {L"a\n1\n"}, {}, {{}}},
    };
    for (auto const& [columns, pieces, missing, records] : headed) {
        EXPECT_EQ(parseHeaded(columns, pieces, missing), records) << testing::PrintToString(columns);
    }
}

TEST(CSVParser, TheHeaderIsNeverData) {
    for (std::vector<std::wstring> const& pieces : {
             std::vector<std::wstring>{L"a,b\r1,2\n3,4\n"},
             {L"a,b\r\n1,2\n3,4\n"},
             {L"a,b\r", L"1,2\r", L"3,4\r"},
             {L"a,b\r", L"\n1,2\r", L"\n3,4\n"},
             {L"a,b\r", L"", L"1,2\r\n3,4\n"},
         }) {
        EXPECT_EQ(parseHeaded(L"b,a", pieces, {false, false}), (Records{{L"2", L"1"}, {L"4", L"3"}}))
            << testing::PrintToString(pieces);
    }
}

TEST(CSVParser, TheRawParserMissesNothing) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    std::vector<bool> missing(3);
    parser->missingColumns(missing);
    EXPECT_TRUE(missing.empty());
}

}
