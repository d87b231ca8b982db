#include "orn/text/CSVParser.h"

#include "tests/support/Cases.h"

#include <gtest/gtest.h>

using namespace ORN;

namespace {

constexpr Cases texts{"orn/text/CSVParserTest.txt"};

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

// Texts that a sign parts.
std::vector<std::wstring> parted(std::wstring const& text, wchar_t sign) {
    std::vector<std::wstring> parts{{}};
    for (wchar_t const unit : text) unit == sign ? parts.emplace_back() : parts.back() += unit;
    return parts;
}

CSVFormat formatOf(std::wstring const& text) { return {text[0], text.size() > 1}; }

TEST(CSVParser, TheRulesHoldWholeAndInPiecesOfAnySize) {
    for (auto const& [text, format, records] : texts.of<3>("records"))
        for (std::size_t size = text.size(); size != 0; --size) {
            std::unique_ptr<CSVParser> const parser{CSVParser::create(formatOf(format))};
            std::vector<std::wstring> pieces;
            for (std::size_t i = 0; i < text.size(); i += size) pieces.push_back(text.substr(i, size));
            EXPECT_EQ(parsePieces(*parser, pieces), records) << text << " by " << size;
        }
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
    for (auto const& [columns, format, pieces, records, missing] : texts.of<5>("columns")) {
        std::unique_ptr<CSVParser> const parser{CSVParser::create(columns, formatOf(format))};
        EXPECT_EQ(parsePieces(*parser, parted(pieces, L'~')), records) << pieces;
        std::vector<bool> found(7, true), expected;
        parser->missingColumns(found);
        for (wchar_t const sign : missing) expected.push_back(sign == L'x');
        EXPECT_EQ(found, expected) << pieces;
    }
}

}
