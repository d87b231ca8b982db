/// Writes records as comma-separated text, which CSVReader reads back unchanged.
#pragma once

#include "orn/Export.h"
#include "orn/text/CSVParser.h"

#include <concepts>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace ORN {

class TextWriter;

/// Writes records field by field, to the end of a text or to a text writer. A field stands in quotes when it has to:
/// when it holds the delimiter, a quote or a line end, when it begins or ends with a blank that the format drops, or
/// when it is empty and the record's only one. Numbers are written by writeDouble. What a CSVReader with the same
/// format reads from the text is what was written, whatever the fields hold.
///
/// A text writer gets what it makes of line ends: it ends records as it ends lines, and line ends in quotes come back
/// from a text reader as LF. The text or the text writer must outlive this object. One thread at a time.
///
///     CSVWriter rows{lines};
///     rows.field(L"name").field(1.5).endRecord();
class ORN_API CSVWriter {
public:
    explicit CSVWriter(TextWriter& lines, CSVFormat format = {});  ///< throws std::logic_error for an illegal delimiter

    /// Each record ends with lineEnd, which is CR LF, LF or CR. Throws std::logic_error for any other, and for an
    /// illegal delimiter.
    explicit CSVWriter(std::wstring& text, CSVFormat format = {}, std::wstring_view lineEnd = L"\r\n");

    /// Adds a field. A text gets it at once; for a text writer this object keeps it until the record ends.
    /// @{
    CSVWriter& field(std::wstring_view text);
    CSVWriter& field(double value);              ///< the shortest text that reads back as the same double
    CSVWriter& field(double value, int digits);  ///< with a fixed number of digits behind the point
    /// @}

    /// Integers that a double cannot hold, characters and truth values do not compile.
    template <std::integral Value>
    requires(sizeof(Value) > 4 || sizeof(Value) == 1 || std::same_as<Value, wchar_t>) CSVWriter& field(Value) = delete;

    /// Ends the record; one without fields is an empty line. Throws what the text writer throws, and the record is then
    /// lost. When it holds a character that cannot be written, a writer made by TextWriter::create gets nothing of it.
    void endRecord();

    /// Adds all fields, and ends the record. Without memory for all of them it adds none.
    void write(std::span<std::wstring const> fields);

private:
    CSVWriter(TextWriter* lines, std::wstring* text, CSVFormat format, std::wstring_view lineEnd);

    TextWriter* lines_;
    std::wstring* text_;
    CSVFormat format_;
    std::wstring lineEnd_;
    std::wstring record_;    // for a text writer, as far as it is written
    std::size_t start_ = 0;  // where the record begins
    bool hasFields_ = false;
};

}
