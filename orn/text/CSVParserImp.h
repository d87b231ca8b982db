/// The two parsers behind ORN::CSVParser.
#pragma once

#include "orn/text/CSVParser.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/CodePoint.h"
#include "orn/unicode/CodePoints.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ORN {

namespace csv {

inline constexpr wchar_t quote = 0x22, feed = 0x0A, carriageReturn = 0x0D;

/// Nearly every unit of a text is told by its first comparison.
constexpr bool isLineEnd(wchar_t unit) noexcept {
    unsigned int const value = static_cast<unsigned int>(unit);
    return value - 0x0Eu >= 0x85u - 0x0Eu && ORN::isLineEnd(value);
}

/// Units will do: no character beyond U+FFFF is a blank.
inline bool isBlank(wchar_t unit) noexcept {
    unsigned int const value = static_cast<unsigned int>(unit);
    if (value < 0x80) return value == 0x20 || (value >= 0x09 && value <= 0x0D);
    return isUspace(CodePoint::codePoint(value));
}

/// Throws std::logic_error for a delimiter that would be taken for something else.
CSVFormat checked(CSVFormat format);

}

class RawCSVParser final : public CSVParser {
public:
    explicit RawCSVParser(CSVFormat format = {}) : format_{csv::checked(format)} {}

    void missingColumns(std::vector<bool>& missing) const override;
    bool parse(std::vector<std::wstring>& fields, std::wstring const& text) override;

    bool betweenRecords() const noexcept { return fieldState_ == FieldState::recordStart; }

    /// Behind a record that ended at a lone CR: lets the next call go on in the current text. False when nothing is left
    /// of it.
    bool goOnBehindReturn() noexcept;

private:
    enum class LineEnd : std::int32_t { none, newline, loneReturn };
    enum class FieldState : std::int32_t { recordStart, afterComma, unquoted, quoted, quoteInQuoted, closed };

    class Record;
    class Split;

    bool pause(std::vector<std::wstring>& fields, Split const& split) noexcept;
    void endRecord(wchar_t const* position, wchar_t const* end) noexcept;

    LineEnd lineEnd_ = LineEnd::none;
    wchar_t const* position_ = nullptr;
    wchar_t const* end_ = nullptr;
    FieldState fieldState_ = FieldState::recordStart;
    std::uint64_t keepLength_ = 0;

    // Between calls: the record begun, and strings whose memory is used again.
    std::vector<std::wstring> fields_;
    std::size_t fieldCount_ = 0;
    CSVFormat format_;
};

class HeadedCSVParser final : public CSVParser {
public:
    explicit HeadedCSVParser(std::wstring_view columns, CSVFormat format = {});

    void missingColumns(std::vector<bool>& missing) const override;
    bool parse(std::vector<std::wstring>& fields, std::wstring const& text) override;

    RawCSVParser const& parser() const noexcept { return parser_; }

private:
    static constexpr std::uint64_t missing_ = ~std::uint64_t{0};

    void readHeader();

    RawCSVParser parser_;
    bool headerPending_ = true;
    std::vector<std::wstring> names_;
    std::vector<std::uint64_t> columns_;  // the place of each name in the header
    std::vector<std::wstring> record_;
    bool repeated_ = false;  // some column is wanted more than once
};

}
