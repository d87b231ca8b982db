// Comma-separated text cut anywhere gives the records that a parser of one character after the other finds in the whole;
// the reader and the parsers with a header agree with it, and what the writer makes of the records reads as the records.
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/foundation/Error.h"
#include "orn/text/CSVParser.h"
#include "orn/text/CSVReader.h"
#include "orn/text/CSVWriter.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/CodePoint.h"

#include <memory>
#include <utility>

namespace {

using Record = std::vector<std::wstring>;
using Records = std::vector<Record>;

bool isLineEnd(wchar_t unit) { return std::wstring{L"\n\f\r\x85\x2028\x2029"}.find(unit) != std::wstring::npos; }

struct Parsed {
    Records records;
    bool inQuotes = false;
};

Parsed parse(std::wstring const& text, ORN::CSVFormat format) {
    enum { start, afterComma, unquoted, quoted, quoteInQuoted, closed } state = start;
    Parsed result;
    Record record;
    std::size_t keep = 0;
    auto const append = [&](std::wstring const& c, bool kept) {
        record.back() += c;
        if (kept) keep = record.back().size();
    };
    bool behindReturn = false;
    for (CodePointEnumerator e{text}; e; ++e) {
        std::wstring const c = *e;
        bool const comma = c[0] == format.delimiter, quote = c == L"\"";
        bool const blank = isUspace(*e) && !comma && (!format.keepBlanks || state == closed || state == quoteInQuoted);
        bool const pairWithReturn = behindReturn && c == L"\n";
        behindReturn = false;
        if (pairWithReturn) continue;
        bool const ends = isLineEnd(c[0]);
        if (state != quoted && (ends || comma)) {
            if (state >= unquoted)
                record.back().resize(keep);
            else if (state == afterComma || comma)
                record.emplace_back();
            state = ends ? start : afterComma;
            if (ends) result.records.push_back(std::exchange(record, {}));
            behindReturn = c == L"\r";
            continue;
        }
        if (state == quoteInQuoted && !quote) state = closed;
        switch (state) {
            case start:
            case afterComma:
                if (blank) break;
                record.emplace_back();
                keep = 0;
                if (!quote) append(c, true);
                state = quote ? quoted : unquoted;
                break;
            case unquoted: append(c, !blank); break;
            case quoted:
                append(c, !quote);
                if (quote) state = quoteInQuoted;
                break;
            case quoteInQuoted:
                keep = record.back().size();
                state = quoted;
                break;
            case closed:
                append(c, !blank && !quote);
                if (!blank) state = quote ? quoteInQuoted : quoted;
                break;
        }
    }
    result.inQuotes = state == quoted;
    return result;
}

// In pieces of sizes by turns, and cut behind every return, because a call never goes on behind one.
std::vector<std::wstring> cut(std::wstring const& text, std::size_t const (&sizes)[2]) {
    std::vector<std::wstring> pieces{{}};
    for (wchar_t const unit : text) {
        auto const& last = pieces.back();
        if (last.size() >= sizes[pieces.size() % 2] || (!last.empty() && last.back() == L'\r' && unit != L'\n'))
            pieces.emplace_back();
        pieces.back() += unit;
    }
    return pieces;
}

Records parsePieces(ORN::CSVParser& parser, std::vector<std::wstring> const& pieces) {
    std::wstring const none;
    Records records;
    Record fields;
    for (auto const& piece : pieces) {
        // A record that ended at a lone return has ended the piece.
        for (bool more = parser.parse(fields, piece); more; more = parser.parse(fields, none))
            records.push_back(fields);
    }
    return records;
}

Records columnsOf(Records const& records, Record const& names) {
    Records result;
    for (std::size_t i = 1; i < records.size(); ++i) {
        auto& row = result.emplace_back();
        for (auto const& name : names) {
            auto const& header = records[0];
            auto const place = static_cast<std::size_t>(std::find(header.begin(), header.end(), name) - header.begin());
            row.push_back(place < header.size() && place < records[i].size() ? records[i][place] : L"");
        }
    }
    return result;
}

// What a reader yields, and whether it fails at the end.
std::pair<Records, bool> readAll(ORN::CSVReader reader) {
    Records records;
    try {
        for (Record record; reader.read(record);) records.push_back(record);
    } catch (ORN::OrnError const&) {
        return {records, true};
    }
    return {records, false};
}

}

ORN_LAW(CSV) {
    std::size_t const sizes[] = {input.option(24) + 1, input.option(5) * 60 + 1};
    ORN::CSVFormat const format{L",;\t \xFEFF"[input.option(5)], input.option(2) == 1};
    std::wstring const text = input.text();
    Parsed const expected = parse(text, format);

    std::unique_ptr<ORN::CSVParser> const raw{ORN::CSVParser::create(format)};
    same("records from pieces", parsePieces(*raw, cut(text, sizes)), expected.records);

    Record const names{L"b", L"a", L"z", L"a"};
    std::wstring columns;
    ORN::CSVWriter{columns, format}.write(names);
    columns.resize(columns.size() - 2);
    Records const wanted = columnsOf(expected.records, names);
    std::unique_ptr<ORN::CSVParser> const headed{ORN::CSVParser::create(columns, format)};
    same("wanted columns from pieces", parsePieces(*headed, cut(text, sizes)), wanted);

    // A reader ends the last line itself.
    Parsed const all = parse(text.empty() || isLineEnd(text.back()) ? text : text + L'\n', format);
    auto const [records, failed] = readAll(ORN::CSVReader{text, format});
    auto const [rows, failedToo] = readAll(ORN::CSVReader{text, columns, format});
    same("records read", records, all.records);
    same("columns read", rows, columnsOf(all.records, names));
    same("reading fails inside quotes", failed, all.inQuotes);
    same("reading columns fails inside quotes", failedToo, all.inQuotes);

    std::wstring written;
    wchar_t const* const ends[] = {L"\r\n", L"\n", L"\r"};
    ORN::CSVWriter writer{written, format, ends[sizes[0] % 3]};
    for (Record const& record : all.records) writer.write(record);
    same("records written and read", readAll(ORN::CSVReader{written, format}).first, all.records);
}
