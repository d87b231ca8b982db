/// The two parsers behind ORN::CSVParser.
#pragma once

#include "orn/text/CSVParser.h"

#include <cstddef>
#include <cstdint>

namespace ORN {

class RawCSVParser final : public CSVParser {
public:
    void missingColumns(std::vector<bool>& missing) const override;
    bool parse(std::vector<std::wstring>& fields, std::wstring const& text) override;

    bool betweenRecords() const noexcept { return fieldState_ == FieldState::recordStart; }

    /// Behind a record that ended at a lone CR: lets the next call go on in the current text. False when nothing is left
    /// of it.
    bool goOnBehindReturn() noexcept;

private:
    enum class LineEnd : std::int32_t { none, newline, loneReturn };
    enum class FieldState : std::int32_t { recordStart, afterComma, unquoted, quoted, quoteInQuoted, closed };

    bool pause(std::vector<std::wstring>& fields, FieldState state, std::size_t count, std::size_t keep) noexcept;

    LineEnd lineEnd_ = LineEnd::none;
    wchar_t const* position_ = nullptr;
    wchar_t const* end_ = nullptr;
    FieldState fieldState_ = FieldState::recordStart;
    std::uint64_t keepLength_ = 0;

    // Between calls: the record begun, and strings whose memory is used again.
    std::vector<std::wstring> fields_;
    std::size_t fieldCount_ = 0;
};

class HeadedCSVParser final : public CSVParser {
public:
    explicit HeadedCSVParser(std::wstring const& columns);

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
