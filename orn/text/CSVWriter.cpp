#include "orn/text/CSVWriter.h"

#include "orn/text/CSVParserImp.h"
#include "orn/text/Numbers.h"
#include "orn/text/TextWriterImp.h"

#include <algorithm>
#include <stdexcept>

namespace ORN {

namespace {

// An empty field needs no quotes beside a delimiter; endRecord() looks after the record that has nothing else.
bool needsQuotes(std::wstring_view text, CSVFormat const& format) noexcept {
    if (text.empty()) return false;
    if (!format.keepBlanks && (csv::isBlank(text.front()) || csv::isBlank(text.back()))) return true;
    for (wchar_t const unit : text)
        if (unit == format.delimiter || unit == csv::quote || csv::isLineEnd(unit)) return true;
    return false;
}

constexpr std::size_t endRoom = 4;  // for two quotes and the line end of a record

// Twice the capacity, so that a text of many fields is copied a bounded number of times.
void grow(std::wstring& text, std::size_t more) { text.reserve(std::max(text.size() + more, 2 * text.capacity())); }

void makeRoom(std::wstring& text, std::size_t more) {
    if (text.capacity() - text.size() < more) grow(text, more);
}

void appendQuoted(std::wstring& record, std::wstring_view text) {
    record += csv::quote;
    for (std::size_t from = 0;;) {
        std::size_t const found = text.find(csv::quote, from);
        record.append(text.substr(from, found - from));
        if (found == std::wstring_view::npos) break;
        record.append(2, csv::quote);
        from = found + 1;
    }
    record += csv::quote;
}

}

CSVWriter::CSVWriter(TextWriter* lines, std::wstring* text, CSVFormat format, std::wstring_view lineEnd)
    : lines_{lines}, text_{text}, format_{csv::checked(format)}, lineEnd_{lineEnd} {
    if (lineEnd != L"\r\n" && lineEnd != L"\n" && lineEnd != L"\r") throw std::logic_error{"illegal line end of CSV"};
}

// The text writer turns the LF into its own line end.
CSVWriter::CSVWriter(TextWriter& lines, CSVFormat format) : CSVWriter{&lines, nullptr, format, L"\n"} {}
CSVWriter::CSVWriter(std::wstring& text, CSVFormat format, std::wstring_view lineEnd)
    : CSVWriter{nullptr, &text, format, lineEnd} {}

CSVWriter& CSVWriter::field(std::wstring_view text) {
    std::wstring& out = text_ != nullptr ? *text_ : record_;
    bool const quoted = needsQuotes(text, format_);
    // A delimiter, two quotes, and every unit of the text twice at most. From here on nothing throws, so a field is written
    // whole or not at all. The room at the end is kept for endRecord, which could not write half a record either.
    makeRoom(out, 3 + (quoted ? 2 * text.size() : text.size()) + endRoom);
    if (hasFields_)
        out += format_.delimiter;
    else
        start_ = out.size();
    hasFields_ = true;
    if (quoted)
        appendQuoted(out, text);
    else
        out += text;
    return *this;
}

CSVWriter& CSVWriter::field(double value) {
    wchar_t room[doubleRoom];
    return field(writeDouble(room, value));
}

CSVWriter& CSVWriter::field(double value, int digits) {
    wchar_t room[512];  // takes every double with up to 200 digits; writeDouble promises what more of them need
    std::wstring_view const text = writeDouble(room, value, digits);
    if (!text.empty()) return field(text);
    std::wstring longer(static_cast<std::size_t>(digits) + 312, L'\0');
    return field(writeDouble(longer, value, digits));
}

void CSVWriter::endRecord() {
    std::wstring& out = text_ != nullptr ? *text_ : record_;
    bool const onlyEmpty = hasFields_ && out.size() == start_;
    makeRoom(out, endRoom);                    // behind a field this is there already
    if (onlyEmpty) out.append(2, csv::quote);  // an empty line has no field
    out += lineEnd_;
    hasFields_ = false;
    if (lines_ == nullptr) return;

    // A record that cannot be written is forgotten, too, so that the next one begins afresh.
    struct Forget {
        std::wstring& record;
        ~Forget() { record.clear(); }
    } const forget{record_};
    // Half a record would join with the next one, and an open quote with all that follow.
    if (auto* const lines = dynamic_cast<WholeTextWriter*>(lines_))
        lines->writeWhole(record_);
    else
        lines_->write(record_);
}

void CSVWriter::write(std::span<std::wstring const> fields) {
    std::wstring& out = text_ != nullptr ? *text_ : record_;
    std::size_t const length = out.size();
    bool const hadFields = hasFields_;
    try {
        for (std::wstring const& text : fields) field(text);
    } catch (...) {
        out.resize(length);  // which is shorter, so it needs no memory
        hasFields_ = hadFields;
        throw;
    }
    endRecord();
}

}
