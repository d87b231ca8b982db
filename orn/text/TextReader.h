/// Text files, line by line, into wide strings.
#pragma once

#include "orn/Export.h"
#include "orn/text/RawFile.h"
#include "orn/text/TextEncoding.h"

#include <string>

namespace ORN {

/// Reads lines that end at CR, LF, CR LF, FF, NEL, LS or PS. Only one thread at a time may use a reader.
class ORN_API TextReader {
public:
    /// Opens a file in the encoding that its byte order mark names. A file without a mark is read in the multibyte code
    /// page; the reader never guesses. The file may be a pipe. Throws OrnError when it cannot be opened or read. The
    /// caller deletes the reader.
    [[nodiscard]] static TextReader* create(std::wstring const& filename);

    /// The same, with an encoding for files without a mark. Null for a value that is no encoding.
    [[nodiscard]] static TextReader* create(std::wstring const& filename, TextEncoding withoutMark);

    /// Reads from where the raw reader stands, without looking for a byte order mark. The raw reader stays the caller's
    /// and must outlive the text reader, which the caller deletes. Null for a value that is no encoding.
    [[nodiscard]] static TextReader* create(RawReader& raw, TextEncoding encoding);

    /// The same, but looks for a byte order mark first. That reads up to four bytes.
    [[nodiscard]] static TextReader* createByMark(RawReader& raw, TextEncoding withoutMark);

    virtual ~TextReader();

    /// Replaces line by the next line, without its line end. Returns false, with line empty, at the end of the input.
    /// The last line needs no line end, and a line end behind it adds no empty line. UTF-8 is read leniently: forms
    /// that are too long pass, and so do wrong continuation bytes up to C0. Throws OrnError for bytes that are no
    /// character of the encoding, for a sequence that the end cuts off, for unpaired surrogates and for values above
    /// U+10FFFF. It also throws what the raw reader throws.
    ///
    /// After an exception, line is empty, and the reader stands where it met the fault. The next call tries again from
    /// there. When the raw reader has recovered, that call returns the whole line. Bytes that are no text throw each
    /// time.
    [[nodiscard]] virtual bool readLine(std::wstring& line) = 0;

    /// Closes the file that create opened; does nothing to a raw reader of the caller. Do not call readLine afterwards.
    virtual void close() = 0;

protected:
    TextReader();
};

}
