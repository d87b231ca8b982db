#include "orn/text/CSVParser.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace ORN;

namespace {

// Records as one text: a bar behind every field, a slash behind every record.
std::wstring shown(std::vector<std::wstring> const& fields) {
    std::wstring text;
    for (std::wstring const& field : fields) text += field + L'|';
    return text + L'/';
}

// Feeds pieces by the protocol. Within a piece an empty text stands for the same text again: it goes on in the piece, and
// it is no text behind a CR that ends the piece.
std::wstring parsePieces(CSVParser& parser, std::vector<std::wstring> const& pieces) {
    std::wstring const empty;
    std::wstring records;
    std::vector<std::wstring> fields;
    for (auto const& piece : pieces)
        for (bool more = parser.parse(fields, piece); more; more = parser.parse(fields, empty))
            records += shown(fields);
    return records;
}

std::wstring parseCut(std::wstring const& text, std::size_t size, CSVFormat format = {}) {
    std::vector<std::wstring> pieces;
    for (std::size_t i = 0; i < text.size(); i += size) pieces.push_back(text.substr(i, size));
    return parsePieces(*std::unique_ptr<CSVParser>{CSVParser::create(format)}, pieces);
}

// Without lone CRs, which have their own rule.
std::tuple<wchar_t const*, wchar_t const*, CSVFormat> const cases[] = {
    {L"a,b,c\n", L"a|b|c|/", {}},
    {L"\t\u00A0\uFEFF\u3000 a b\u2003\v\n", L"a b|/", {}},
    {L",\n", L"||/", {}},
    {L"a,,\"b\" ,\"\"\n", L"a||b||/", {}},
    {L"  \" a \"  ,b\n", L" a |b|/", {}},
    {L"\"a\r\nb\rc\u2028\"\n", L"a\r\nb\rc\u2028|/", {}},
    {L"a\"b\"\n", L"a\"b\"|/", {}},
    {L"\"a\"x\n\"\n", L"a\"x\n|/", {}},  // a quoted field again
    {L"\"a\" \"\n", L"a|/", {}},         // blanks, then a quote that closes it again
    {L"\"a\" \"\"\n\"\n", L"a\" \"\n|/", {}},
    {L"a\nb\fc\u0085d\u2028e\u2029", L"a|/b|/c|/d|/e|/", {}},
    {L"a;b,c;\"d;\" ; e\n", L"a|b,c|d;|e|/", {L';'}},
    {L"\ta\t \t\"b\"\t\n", L"|a||b||/", {L'\t'}},
    {L" a , b\t,\" c \" ,\n", L" a | b\t| c ||/", {L',', true}},
    {L"long field beyond a block of units,second one as long as that\n",
     L"long field beyond a block of units|second one as long as that|/",
     {}},
};

TEST(CSVParser, TheRulesHoldWholeAndInPiecesOfAnySize) {
    for (auto const& [text, records, format] : cases)
        for (std::size_t size = std::max<std::size_t>(1, std::wcslen(text)); size != 0; --size)
            EXPECT_EQ(parseCut(text, size, format), records) << testing::PrintToString(text) << " by " << size;
}

TEST(CSVParser, ThePartialRecordStaysInsideTheParser) {
    std::unique_ptr<CSVParser> const parser{CSVParser::create({L';'})};
    std::wstring const first = L"a ; \"b", second = L"c\";d\n";
    std::vector<std::wstring> some{L"left over"}, other{L"from", L"before", L"and", L"more"};
    EXPECT_FALSE(parser->parse(some, first));
    EXPECT_TRUE(parser->parse(other, second));
    EXPECT_EQ(shown(other), L"a|bc|d|/");
    EXPECT_FALSE(parser->parse(some, second));
}

TEST(CSVParser, BehindALoneReturnTheNextTextIsTakenFromItsStart) {
    std::wstring const text = L"a\rb\rc", behind = L"b\rc", last = L"c", empty, feed = L"\n", more = L"d\n";
    std::wstring const atEnd = L"x\r", split = L"\ny\n";
    // The same text again is the same record again. A LF belongs to the CR, though an empty text came between.
    struct {
        std::wstring const& text;
        wchar_t const* record;  // null where there is none
    } const calls[] = {
        {text, L"a|/"},  {text, L"a|/"},  {behind, L"b|/"}, {empty, nullptr}, {last, nullptr},  {feed, L"c|/"},
        {feed, nullptr}, {atEnd, L"x|/"}, {empty, nullptr}, {split, L"y|/"},  {split, nullptr}, {more, L"d|/"},
    };
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    for (auto const& call : calls) {
        std::vector<std::wstring> fields;
        ASSERT_EQ(parser->parse(fields, call.text), call.record != nullptr) << &call - calls;
        if (call.record != nullptr) {
            ASSERT_EQ(shown(fields), call.record);
        }
    }
}

TEST(CSVParser, ColumnsByNameAndTheHeaderIsNeverData) {
    struct {
        wchar_t const* columns;
        std::vector<std::wstring> pieces;
        std::vector<bool> missing;
        wchar_t const* records;
        CSVFormat format = {};
    } const headed[] = {
        {L"b,z", {L"a,b,c\n1,2,3\n"}, {false, true}, L"2||/"},
        {L"c,a", {L"a,b,c\n1,2,3\n4,5\n\n6,7,8,9\n"}, {false, false}, L"3|1|/|4|/||/8|6|/"},
        {L" \"x,y\" , b", {L"\"x,y\",B\r\n1,2\r\n"}, {false, true}, L"1||/"},
        {L"a,a,b", {L"b,a,a\n1,2,3\n4,5,6\n"}, {false, false, false}, L"2|2|1|/5|5|4|/"},
        {L"a", {L"\"a", L"\"\n", L"1\n"}, {false}, L"1|/"},
        {L"\"a", {L"x\n"}, {true}, L""},
        {L"", {L"a\n1\n"}, {}, L"/"},
        {L"b,a", {L"a,b\r", L"1,2\r", L"3,4\r"}, {false, false}, L"2|1|/4|3|/"},
        {L"b,a", {L"a,b\r", L"\n1,2\r", L"\n3,4\n"}, {false, false}, L"2|1|/4|3|/"},
        {L"b,a", {L"a,b\r", L"", L"1,2\r\n3,4\n"}, {false, false}, L"2|1|/4|3|/"},
        {L"b;\"a;\"", {L"\"a;\";b\n1,5;2\n"}, {false, false}, L"2|1,5|/", {L';'}},
    };
    for (auto const& [columns, pieces, missing, records, format] : headed) {
        std::unique_ptr<CSVParser> const parser{CSVParser::create(columns, format)};
        EXPECT_EQ(parsePieces(*parser, pieces), records) << testing::PrintToString(pieces);
        std::vector<bool> found(7, true);
        parser->missingColumns(found);
        EXPECT_EQ(found, missing) << testing::PrintToString(pieces);
    }
}

}
