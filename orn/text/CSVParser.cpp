#include "orn/text/CSVParserImp.h"

#include "orn/text/CharacterClass.h"
#include "orn/text/CodePoint.h"
#include "orn/text/LineEndImp.h"

#include <algorithm>
#include <utility>

namespace ORN {

namespace {

constexpr wchar_t comma = 0x2C, quote = 0x22, feed = 0x0A, carriageReturn = 0x0D;

constexpr bool isLineEnd(wchar_t unit) noexcept { return ORN::isLineEnd(static_cast<unsigned int>(unit)); }

// Units will do: no character beyond U+FFFF is a blank.
bool isBlank(wchar_t unit) noexcept {
    unsigned int const value = static_cast<unsigned int>(unit);
    if (value < 0x80) return value == 0x20 || (value >= 0x09 && value <= 0x0D);
    return isUspace(CodePoint::codePoint(value));
}

wchar_t const* findUnquotedEnd(wchar_t const* p, wchar_t const* e) noexcept {
    while (p != e && *p != comma && !isLineEnd(*p)) ++p;
    return p;
}

wchar_t const* findQuote(wchar_t const* p, wchar_t const* e) noexcept { return std::find(p, e, quote); }

/// The record being built in a vector whose strings are used again.
class Record {
public:
    Record(std::vector<std::wstring>& fields, std::size_t count) noexcept : fields_{fields}, count_{count} {}

    std::wstring& addField() {
        if (count_ == fields_.size()) fields_.emplace_back();
        std::wstring& field = fields_[count_++];
        field.clear();
        return field;
    }
    std::wstring& last() noexcept { return fields_[count_ - 1]; }
    std::size_t count() const noexcept { return count_; }
    void finish() { fields_.resize(count_); }

private:
    std::vector<std::wstring>& fields_;
    std::size_t count_;
};

}

CSVParser::CSVParser() = default;
CSVParser::CSVParser(CSVParser const&) = default;
CSVParser::~CSVParser() = default;

CSVParser* CSVParser::create() { return new RawCSVParser; }
CSVParser* CSVParser::create(std::wstring const& columns) { return new HeadedCSVParser{columns}; }

void RawCSVParser::missingColumns(std::vector<bool>& missing) const { missing.clear(); }

bool RawCSVParser::goOnBehindReturn() noexcept {
    if (lineEnd_ == LineEnd::loneReturn && position_ != end_) lineEnd_ = LineEnd::newline;
    return lineEnd_ == LineEnd::newline;
}

// At the end of the text: keeps the record begun.
bool RawCSVParser::pause(std::vector<std::wstring>& fields, FieldState state, std::size_t count,
                         std::size_t keep) noexcept {
    lineEnd_ = LineEnd::none;
    fieldState_ = state;
    keepLength_ = keep;
    fieldCount_ = count;
    fields_.swap(fields);
    fields.clear();
    return false;
}

bool RawCSVParser::parse(std::vector<std::wstring>& fields, std::wstring const& text) {
    // Until the call has gone well, the parser is as new.
    LineEnd const before = std::exchange(lineEnd_, LineEnd::none);
    FieldState state = std::exchange(fieldState_, FieldState::recordStart);
    std::size_t keep = keepLength_;
    wchar_t const* p = text.data();
    wchar_t const* e = p + text.size();
    if (!fields_.empty()) {
        fields.swap(fields_);
        fields_.clear();
    }

    if (before == LineEnd::newline) {
        p = position_;
        e = end_;
    } else if (before == LineEnd::loneReturn) {
        if (p == e) {
            pause(fields, FieldState::recordStart, 0, 0);
            lineEnd_ = LineEnd::loneReturn;
            return false;
        }
        if (*p == feed) ++p;
    }
    Record record{fields, state == FieldState::recordStart ? 0 : fieldCount_};

    for (;;) {
        switch (state) {
            case FieldState::recordStart:
            case FieldState::afterComma:
                while (p != e && isBlank(*p) && !isLineEnd(*p)) ++p;
                if (p == e) return pause(fields, state, record.count(), keep);
                if (isLineEnd(*p)) {
                    if (state == FieldState::afterComma) record.addField();
                    break;
                }
                if (*p == comma) {
                    record.addField();
                    state = FieldState::afterComma;
                    ++p;
                    continue;
                }
                record.addField();
                keep = 0;
                if (*p == quote) {
                    state = FieldState::quoted;
                    ++p;
                    continue;
                }
                state = FieldState::unquoted;
                [[fallthrough]];

            case FieldState::unquoted: {
                std::wstring& field = record.last();
                wchar_t const* const stop = findUnquotedEnd(p, e);
                wchar_t const* solid = stop;
                while (solid != p && isBlank(solid[-1])) --solid;
                if (solid != p) keep = field.size() + static_cast<std::size_t>(solid - p);
                field.append(p, stop);
                p = stop;
                if (p == e) return pause(fields, state, record.count(), keep);
                field.resize(keep);
                if (*p != comma) break;
                state = FieldState::afterComma;
                ++p;
                continue;
            }

            case FieldState::quoted: {
                std::wstring& field = record.last();
                wchar_t const* const stop = findQuote(p, e);
                if (stop != p) {
                    field.append(p, stop);
                    keep = field.size();
                    p = stop;
                }
                if (p == e) return pause(fields, state, record.count(), keep);
                field += quote;  // it goes when the field ends here
                state = FieldState::quoteInQuoted;
                ++p;
                continue;
            }

            case FieldState::quoteInQuoted:
                if (p != e && *p == quote) {
                    keep = record.last().size();
                    state = FieldState::quoted;
                    ++p;
                    continue;
                }
                if (p == e) return pause(fields, state, record.count(), keep);
                [[fallthrough]];

            case FieldState::closed: {
                if (p == e) return pause(fields, state, record.count(), keep);
                std::wstring& field = record.last();
                if (isLineEnd(*p)) {
                    field.resize(keep);
                    break;
                }
                if (*p == comma) {
                    field.resize(keep);
                    state = FieldState::afterComma;
                } else {
                    field += *p;
                    if (*p == quote) {
                        state = FieldState::quoteInQuoted;
                    } else if (isBlank(*p)) {
                        state = FieldState::closed;
                    } else {
                        keep = field.size();
                        state = FieldState::quoted;
                    }
                }
                ++p;
                continue;
            }
        }

        // The record ends at the line end that p stands on.
        record.finish();
        LineEnd lineEnd = *p++ == carriageReturn ? LineEnd::loneReturn : LineEnd::newline;
        if (lineEnd == LineEnd::loneReturn && p != e && *p == feed) {
            ++p;
            lineEnd = LineEnd::newline;
        }
        lineEnd_ = lineEnd;
        position_ = p;
        end_ = e;
        return true;
    }
}

HeadedCSVParser::HeadedCSVParser(std::wstring const& columns) {
    RawCSVParser parser;
    // A quote left open takes the rest as it stands.
    if (std::wstring const text = columns + feed; !parser.parse(names_, text)) parser.parse(names_, {quote, feed});
    columns_.assign(names_.size(), missing_);
}

void HeadedCSVParser::missingColumns(std::vector<bool>& missing) const {
    missing.clear();
    for (std::uint64_t const column : columns_) missing.push_back(column == missing_);
}

void HeadedCSVParser::readHeader() {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        auto const found = std::find(record_.begin(), record_.end(), names_[i]);
        if (found == record_.end()) continue;
        columns_[i] = static_cast<std::uint64_t>(found - record_.begin());
        repeated_ = repeated_ || std::find(columns_.begin(), columns_.begin() + i, columns_[i]) != columns_.begin() + i;
    }
    headerPending_ = false;
}

bool HeadedCSVParser::parse(std::vector<std::wstring>& fields, std::wstring const& text) {
    if (!parser_.parse(record_, text)) return false;
    if (headerPending_) {
        readHeader();
        // Behind a lone CR the same text would be taken from its start, that is, from the header.
        return parser_.goOnBehindReturn() && parse(fields, text);
    }
    fields.resize(names_.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (columns_[i] >= record_.size()) {
            fields[i].clear();
            continue;
        }
        auto const here = columns_.begin() + static_cast<std::ptrdiff_t>(i);
        auto const earlier = repeated_ ? std::find(columns_.begin(), here, columns_[i]) : here;
        if (earlier != here) {
            fields[i] = fields[static_cast<std::size_t>(earlier - columns_.begin())];
        } else {
            fields[i].swap(record_[columns_[i]]);
        }
    }
    return true;
}

}
