#include "orn/text/CSVReader.h"

#include "orn/foundation/Error.h"
#include "orn/text/CSVParserImp.h"
#include "orn/text/TextReader.h"
#include "orn/unicode/CodePoints.h"
#include "ornmsg/ornmsg.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace ORN {

// Feeds the parser pieces with one line end each, at their end. So a piece completes one record at most, and what lies
// behind a lone CR is always the next piece.
class CSVReader::Imp {
public:
    Imp(TextReader* lines, std::wstring_view text, CSVFormat format)
        : Imp{lines, text, std::make_unique<RawCSVParser>(format)} {}
    Imp(TextReader* lines, std::wstring_view text, std::wstring_view columns, CSVFormat format)
        : Imp{lines, text, std::make_unique<HeadedCSVParser>(columns, format)} {}

    bool read(std::vector<std::wstring>& fields) {
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        // The parser goes on in its text until it has answered false.
        if (pending_) {
            pending_ = false;
            parse(fields);
        }
        if (raw_.betweenRecords()) first_ = counted_ ? line_ : line_ + 1;
        while (nextPiece()) {
            if (parse(fields)) {
                // A piece ended by a lone CR is not to be handed in again; any other is, until it is used up.
                pending_ = piece_.back() != L'\r';
                return true;
            }
            // This piece was the header, which is no record: the first one begins behind it.
            if (raw_.betweenRecords()) first_ = line_ + 1;
        }
        if (!raw_.betweenRecords()) throw OrnError{ornMsg(283)};
        fields.clear();
        return false;
    }

    std::uint64_t firstLine() const noexcept { return first_; }
    std::uint64_t lastLine() const noexcept { return line_; }
    CSVParser const& parser() const noexcept { return *parser_; }

private:
    Imp(TextReader* lines, std::wstring_view text, std::unique_ptr<RawCSVParser> parser)
        : lines_{lines}, text_{text}, raw_{*parser}, parser_{std::move(parser)} {}
    Imp(TextReader* lines, std::wstring_view text, std::unique_ptr<HeadedCSVParser> parser)
        : lines_{lines}, text_{text}, raw_{parser->parser()}, parser_{std::move(parser)} {}

    // Without memory the parser loses the record begun. The rest of it, perhaps from within quotes, would be read as
    // other records.
    bool parse(std::vector<std::wstring>& fields) {
        try {
            return parser_->parse(fields, piece_);
        } catch (...) {
            failure_ = std::current_exception();
            throw;
        }
    }

    // A line counts before it is read: when reading fails, lastLine() is the line that could not be read. The next call
    // reads that line again, but does not count it again.
    bool nextPiece() {
        if (!std::exchange(counted_, true)) ++line_;
        bool const came = lines_ != nullptr ? nextLine() : nextPartOfText();
        counted_ = false;
        if (!came) --line_;
        return came;
    }

    bool nextLine() {
        if (!endMissing_ && !lines_->readLine(piece_)) return false;
        // The line has lost its line end, which the parser needs. A LF stands for every kind.
        endMissing_ = true;
        piece_ += L'\n';
        endMissing_ = false;
        return true;
    }

    bool nextPartOfText() {
        auto const begin = text_.begin() + static_cast<std::ptrdiff_t>(position_), end = text_.end();
        if (begin == end) return false;
        auto stop = std::find_if(begin, end, [](wchar_t unit) { return isLineEnd(static_cast<unsigned int>(unit)); });
        bool const last = stop == end;
        if (!last && *stop++ == L'\r' && stop != end && *stop == L'\n') ++stop;
        piece_.assign(begin, stop);
        if (last) piece_ += L'\n';  // the last record needs no line end
        position_ = static_cast<std::size_t>(stop - text_.begin());
        return true;
    }

    TextReader* lines_;
    std::wstring_view text_;
    std::size_t position_ = 0;
    // Declared before parser_: both are initialised from one pointer, which parser_ takes away.
    RawCSVParser const& raw_;  // the parser, or the one inside it when there is a header
    std::unique_ptr<CSVParser> parser_;
    std::wstring piece_;
    bool pending_ = false;
    bool endMissing_ = false;  // there was no memory for the LF behind the line
    std::exception_ptr failure_;
    std::uint64_t line_ = 0, first_ = 0;
    bool counted_ = false;  // reading the line that line_ counts has thrown
};

CSVReader::CSVReader(TextReader& lines) : CSVReader{lines, CSVFormat{}} {}
CSVReader::CSVReader(std::wstring const& text) : CSVReader{text, CSVFormat{}} {}
CSVReader::CSVReader(TextReader& lines, CSVFormat format)
    : imp_{std::make_unique<Imp>(&lines, std::wstring_view{}, format)} {}
CSVReader::CSVReader(std::wstring const& text, CSVFormat format) : imp_{std::make_unique<Imp>(nullptr, text, format)} {}
CSVReader::CSVReader(TextReader& lines, std::wstring const& columns) : CSVReader{lines, columns, CSVFormat{}} {}
CSVReader::CSVReader(std::wstring const& text, std::wstring const& columns) : CSVReader{text, columns, CSVFormat{}} {}
CSVReader::CSVReader(TextReader& lines, std::wstring_view columns, CSVFormat format)
    : imp_{std::make_unique<Imp>(&lines, std::wstring_view{}, columns, format)} {}
CSVReader::CSVReader(std::wstring const& text, std::wstring_view columns, CSVFormat format)
    : imp_{std::make_unique<Imp>(nullptr, text, columns, format)} {}
CSVReader::CSVReader(std::wstring_view text, std::wstring_view const* columns, CSVFormat format)
    : imp_{columns != nullptr ? std::make_unique<Imp>(nullptr, text, *columns, format)
                              : std::make_unique<Imp>(nullptr, text, format)} {}
CSVReader::CSVReader(CSVReader&&) noexcept = default;
CSVReader& CSVReader::operator=(CSVReader&&) noexcept = default;
CSVReader::~CSVReader() = default;

bool CSVReader::read(std::vector<std::wstring>& fields) { return imp_->read(fields); }
std::uint64_t CSVReader::firstLine() const noexcept { return imp_->firstLine(); }
std::uint64_t CSVReader::lastLine() const noexcept { return imp_->lastLine(); }
void CSVReader::missingColumns(std::vector<bool>& missing) const { imp_->parser().missingColumns(missing); }

}
