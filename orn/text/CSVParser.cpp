#include "orn/text/CSVParserImp.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ORN {

using csv::isBlank, csv::isLineEnd, csv::quote;

CSVFormat csv::checked(CSVFormat format) {
    wchar_t const delimiter = format.delimiter;
    // Half a pair as the delimiter would divide characters of the fields.
    if (delimiter == quote || isLineEnd(delimiter) || isSurrogate(static_cast<unsigned int>(delimiter)))
        throw std::logic_error{"illegal delimiter of CSV"};
    return format;
}

CSVParser::CSVParser() = default;
CSVParser::CSVParser(CSVParser const&) = default;
CSVParser::~CSVParser() = default;

CSVParser* CSVParser::create() { return new RawCSVParser; }
CSVParser* CSVParser::create(std::wstring const& columns) { return new HeadedCSVParser{columns}; }
CSVParser* CSVParser::create(CSVFormat format) { return new RawCSVParser{format}; }
CSVParser* CSVParser::create(std::wstring_view columns, CSVFormat format) {
    return new HeadedCSVParser{columns, format};
}

/// The record being built in a vector whose strings are used again.
class RawCSVParser::Record {
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

/// Splits a text up to the end of a record: a step for each state, which takes what belongs to it and sets the next one.
class RawCSVParser::Split {
public:
    /// True at the line end that ends the record, false when the text is used up.
    bool run() {
        while (position != end)
            if (step()) return true;
        return false;
    }

    wchar_t const* position;
    wchar_t const* end;
    CSVFormat format;
    Record record;
    FieldState state;
    std::size_t keep;  ///< the length to which the current field will be cut

private:
    // The steps stand before something, and return true at the line end that ends the record.

    bool step() {
        switch (state) {
            case FieldState::unquoted: return takeUnquoted();
            case FieldState::quoted: return takeQuoted();
            case FieldState::quoteInQuoted: return takeBehindQuote();
            case FieldState::closed: return takeClosed();
            default: return beginField();
        }
    }

    bool beginField() {
        while (isBlank(*position) && isLeftAway(*position))
            if (++position == end) return false;
        if (isLineEnd(*position)) {
            // Behind a delimiter there is one more field, which is empty. An empty line has no field.
            if (state == FieldState::afterComma) record.addField();
            return true;
        }
        record.addField();
        keep = 0;
        if (*position == format.delimiter) return endField();
        if (*position != quote) return takeUnquoted();
        state = FieldState::quoted;
        ++position;
        return false;
    }

    // A blank may also be a line end, or the delimiter, such as a tab.
    bool isLeftAway(wchar_t blank) const noexcept {
        return !format.keepBlanks && blank != format.delimiter && !isLineEnd(blank);
    }

    bool takeUnquoted() {
        state = FieldState::unquoted;
        std::wstring& field = record.last();
        wchar_t const* stop = position;
        wchar_t const* const last = end;
        wchar_t const delimiter = format.delimiter;
        while (stop != last && *stop != delimiter && !isLineEnd(*stop)) ++stop;
        // Blanks at its end stay in the field, because more of it may follow in the next text; endField cuts them.
        wchar_t const* solid = stop;
        while (!format.keepBlanks && solid != position && isBlank(solid[-1])) --solid;
        if (solid != position) keep = field.size() + static_cast<std::size_t>(solid - position);
        field.append(position, stop);
        position = stop;
        return position != end && endField();
    }

    bool takeQuoted() {
        std::wstring& field = record.last();
        wchar_t const* const stop = std::find(position, end, quote);
        if (stop != position) {
            field.append(position, stop);
            keep = field.size();
            position = stop;
        }
        if (position == end) return false;
        field += quote;  // it goes when the field ends here
        state = FieldState::quoteInQuoted;
        ++position;
        return false;
    }

    bool takeBehindQuote() {
        // Two quotes are one of the field's. Behind any other unit the quotes are closed.
        if (*position != quote) return takeClosed();
        keep = record.last().size();
        state = FieldState::quoted;
        ++position;
        return false;
    }

    bool takeClosed() {
        wchar_t const unit = *position;
        if (unit == format.delimiter || isLineEnd(unit)) return endField();
        std::wstring& field = record.last();
        field += unit;
        ++position;
        // Anything but a blank opens the quotes again, and the closing quote is then part of the field.
        state = unit == quote ? FieldState::quoteInQuoted : isBlank(unit) ? FieldState::closed : FieldState::quoted;
        if (state == FieldState::quoted) keep = field.size();
        return false;
    }

    /// At a delimiter or a line end.
    bool endField() {
        record.last().resize(keep);
        if (*position != format.delimiter) return true;
        state = FieldState::afterComma;
        ++position;
        return false;
    }
};

void RawCSVParser::missingColumns(std::vector<bool>& missing) const { missing.clear(); }

bool RawCSVParser::goOnBehindReturn() noexcept {
    if (lineEnd_ == LineEnd::loneReturn && position_ != end_) lineEnd_ = LineEnd::newline;
    return lineEnd_ == LineEnd::newline;
}

bool RawCSVParser::parse(std::vector<std::wstring>& fields, std::wstring const& text) {
    // Until the call has gone well, the parser is as new.
    LineEnd const before = std::exchange(lineEnd_, LineEnd::none);
    FieldState const state = std::exchange(fieldState_, FieldState::recordStart);
    // The record begun goes on in the caller's vector, whose strings keep their memory.
    if (!fields_.empty()) {
        fields.swap(fields_);
        fields_.clear();
    }
    // An empty text does not tell whether a LF follows the CR.
    if (before == LineEnd::loneReturn && text.empty()) {
        pause(fields, {nullptr, nullptr, format_, {fields, 0}, FieldState::recordStart, 0});
        lineEnd_ = LineEnd::loneReturn;
        return false;
    }

    bool const goesOn = before == LineEnd::newline;
    // At the start of a record the strings in the vector are old ones, of which only the memory is used.
    Split split{goesOn ? position_ : text.data(),
                goesOn ? end_ : text.data() + text.size(),
                format_,
                {fields, state == FieldState::recordStart ? 0 : fieldCount_},
                state,
                keepLength_};
    // A LF at the head of the text, which is not empty here, counts as the rest of a CR LF.
    if (before == LineEnd::loneReturn && *split.position == csv::feed) ++split.position;
    if (!split.run()) return pause(fields, split);

    split.record.finish();
    endRecord(split.position, split.end);
    return true;
}

// At the end of the text: keeps the record begun.
bool RawCSVParser::pause(std::vector<std::wstring>& fields, Split const& split) noexcept {
    lineEnd_ = LineEnd::none;
    fieldState_ = split.state;
    keepLength_ = split.keep;
    fieldCount_ = split.record.count();
    fields_.swap(fields);
    fields.clear();
    return false;
}

// Goes on behind the line end at the position.
void RawCSVParser::endRecord(wchar_t const* position, wchar_t const* end) noexcept {
    lineEnd_ = LineEnd::newline;
    if (*position++ == csv::carriageReturn) {
        if (position != end && *position == csv::feed)
            ++position;
        else
            lineEnd_ = LineEnd::loneReturn;
    }
    position_ = position;
    end_ = end;
}

HeadedCSVParser::HeadedCSVParser(std::wstring_view columns, CSVFormat format) : parser_{format} {
    RawCSVParser parser{format};
    std::wstring const text = std::wstring{columns} + csv::feed;
    // A quote left open takes the rest as it stands.
    if (!parser.parse(names_, text)) parser.parse(names_, {quote, csv::feed});
    columns_.assign(names_.size(), missing_);
}

void HeadedCSVParser::missingColumns(std::vector<bool>& missing) const {
    missing.clear();
    for (std::uint64_t const column : columns_) missing.push_back(column == missing_);
}

void HeadedCSVParser::readHeader() {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        auto const found = std::find(record_.begin(), record_.end(), names_[i]);
        if (found == record_.end()) continue;  // it stays missing
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
        // Missing, or behind the end of a short record.
        if (columns_[i] >= record_.size()) {
            fields[i].clear();
            continue;
        }
        // The first of several equal columns takes the string out of the record, and the others copy it.
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
