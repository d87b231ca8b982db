/// Reads records from comma-separated text, one after the other.
#pragma once

#include "orn/Export.h"
#include "orn/text/CSVParser.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ORN {

class TextReader;

/// Reads records by the rules of CSVParser from a text reader, or from a whole text. The last record needs no line end.
/// The reader keeps one record in memory. It copies neither the text reader nor the text, which must outlive it. Only
/// one thread may use a reader at a time.
///
///     CSVReader rows{lines, L"x,y"};
///     for (std::vector<std::wstring> row; rows.read(row);) use(row[0], row[1]);
class ORN_API CSVReader {
public:
    /// Yields every field of every record. Throws std::logic_error for an illegal delimiter.
    /// @{
    explicit CSVReader(TextReader& lines);
    explicit CSVReader(std::wstring const& text);
    CSVReader(TextReader& lines, CSVFormat format);
    CSVReader(std::wstring const& text, CSVFormat format);
    CSVReader(TextReader& lines, wchar_t delimiter) : CSVReader{lines, CSVFormat{delimiter}} {}
    CSVReader(std::wstring const& text, wchar_t delimiter) : CSVReader{text, CSVFormat{delimiter}} {}
    template <std::same_as<std::wstring_view> View>
    explicit CSVReader(View text, CSVFormat format = {}) : CSVReader{text, nullptr, format} {}
    /// @}

    /// Takes the first record as the header and yields of the others the columns named here (themselves a record of the
    /// same format), in this order. Throws std::logic_error for an illegal delimiter.
    /// @{
    CSVReader(TextReader& lines, std::wstring const& columns);
    CSVReader(std::wstring const& text, std::wstring const& columns);
    CSVReader(TextReader& lines, std::wstring_view columns, CSVFormat format);
    CSVReader(std::wstring const& text, std::wstring_view columns, CSVFormat format);
    template <std::same_as<std::wstring_view> View>
    CSVReader(View text, std::wstring_view columns, CSVFormat format = {}) : CSVReader{text, &columns, format} {}
    /// @}

    /// These do not compile, because the text would be gone at once.
    /// @{
    explicit CSVReader(std::wstring const&& text) = delete;
    CSVReader(std::wstring const&& text, CSVFormat format) = delete;
    CSVReader(std::wstring const&& text, wchar_t delimiter) = delete;
    CSVReader(std::wstring const&& text, std::wstring const& columns) = delete;
    CSVReader(std::wstring const&& text, std::wstring_view columns, CSVFormat format) = delete;
    /// @}

    CSVReader(CSVReader&&) noexcept;             ///< the other can only be assigned to and destroyed
    CSVReader& operator=(CSVReader&&) noexcept;  ///< the other can only be assigned to and destroyed
    ~CSVReader();

    /// Replaces fields by the next record; false, with fields empty, at the end of the input. An empty line is a
    /// record: without fields, or with all wanted columns empty. A line end in quotes is read from a text reader as LF.
    /// Throws OrnError when the input ends inside quotes, and what the text reader throws. When the text reader has
    /// recovered, the next call goes on. When memory runs out while a record is divided into its fields, the record is
    /// lost, and every later call throws the same exception.
    bool read(std::vector<std::wstring>& fields);

    /// The lines, counted from 1, in which the record that read yielded last begins and ends. When read throws, the
    /// first is where the record begun begins, the last is the line that could not be read, or the input's last one.
    /// @{
    std::uint64_t firstLine() const noexcept;
    std::uint64_t lastLine() const noexcept;
    /// @}

    /// Tells for each wanted column whether the header lacks it. The first read reads the header; before that, and when
    /// the input is empty, all columns are missing.
    void missingColumns(std::vector<bool>& missing) const;

private:
    class Imp;

    CSVReader(std::wstring_view text, std::wstring_view const* columns, CSVFormat format);

    std::unique_ptr<Imp> imp_;
};

}
