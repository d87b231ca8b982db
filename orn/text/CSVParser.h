/// Comma-separated text into records of wide-string fields, piece by piece. CSVReader stands on it and is simpler to
/// use.
#pragma once

#include "orn/Export.h"

#include <string>
#include <string_view>
#include <vector>

namespace ORN {

/// What stands between fields, and what blanks around them mean.
struct CSVFormat {
    wchar_t delimiter = L',';  ///< any unit but a quote, a line end or a surrogate
    bool keepBlanks = false;   ///< blanks around fields without quotes belong to them
};

/// A record ends at CR, LF, CR LF, FF, NEL, LS or PS. A field may stand in quotes: then it may hold commas and line
/// ends, and "" is a quote. The parser drops blanks (isUspace) around fields, unless the format keeps them. Nothing in
/// the text is an error: an unbalanced quote keeps the record open, and the text behind a closing quote belongs to the
/// field, together with that quote. Only one thread may use a parser at a time. An exception (memory has run out) loses
/// the record begun, and the next text starts a new one.
///
/// Call parse with the same text until it returns false, then with the next piece; pieces may be cut anywhere. The text
/// must live unchanged until then. There is one exception: after a record that ended at a CR without LF, the next call
/// starts at the beginning of its text. So pass the text behind that CR; an LF at its beginning belongs to the CR.
class ORN_API CSVParser {
public:
    /// Yields every field; the caller deletes the parser. Throws std::logic_error for an illegal delimiter.
    /// @{
    [[nodiscard]] static CSVParser* create();
    [[nodiscard]] static CSVParser* create(CSVFormat format);
    [[nodiscard]] static CSVParser* create(wchar_t delimiter) { return create(CSVFormat{delimiter}); }
    /// @}

    /// Takes the first record as the header and yields of the others the columns named here, in this order. columns is
    /// itself a record of the same format. The caller deletes the parser. Throws std::logic_error for an illegal
    /// delimiter.
    /// @{
    [[nodiscard]] static CSVParser* create(std::wstring const& columns);
    [[nodiscard]] static CSVParser* create(std::wstring_view columns, CSVFormat format);
    /// @}

    CSVParser();                  ///< for the implementation
    CSVParser(CSVParser const&);  ///< for the implementation
    virtual ~CSVParser();

    /// Tells for each wanted column whether the header lacks it. All columns are missing until the header has been
    /// read. Without wanted columns the result is empty.
    virtual void missingColumns(std::vector<bool>& missing) const = 0;

    /// True: fields is one record. An empty line is a record without fields, and a wanted column that the record lacks
    /// is empty. False: the text is used up; the parser keeps the record begun, and fields holds nothing of use.
    virtual bool parse(std::vector<std::wstring>& fields, std::wstring const& text) = 0;
};

}
