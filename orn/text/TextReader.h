/// Text files by lines into wide strings.
#pragma once

#include "orn/Export.h"
#include "orn/text/RawFile.h"
#include "orn/text/TextEncoding.h"

#include <string>

namespace ORN {

/// Reads lines that end at CR, LF, CR LF, FF, NEL, LS or PS. One thread at a time.
class ORN_API TextReader {
public:
    /// Opens a file, in the encoding that its byte order mark names, without one in the multibyte code page (never by
    /// guessing). The file may be a pipe. Throws OrnError when it cannot be opened or read. The caller deletes the reader.
    [[nodiscard]] static TextReader* create(std::wstring const& filename);

    /// The same, with an encoding for files without a mark. Null for a value that is no encoding.
    [[nodiscard]] static TextReader* create(std::wstring const& filename, TextEncoding withoutMark);

    /// Reads from where the raw reader stands, without looking for a byte order mark. The raw reader stays the caller's
    /// and must outlive the text reader, which the caller deletes. Null for a value that is no encoding.
    [[nodiscard]] static TextReader* create(RawReader& raw, TextEncoding encoding);

    /// The same, looking for a byte order mark first (reads up to four bytes).
    [[nodiscard]] static TextReader* createByMark(RawReader& raw, TextEncoding withoutMark);

    virtual ~TextReader();

    /// Replaces line by the next line, without its line end, of whichever kind that was; false, with line empty, at the
    /// end of the input. The last line needs no line end, and one behind it adds no empty line. UTF-8 is read leniently:
    /// overlong forms and wrong continuation bytes up to C0 pass. Throws OrnError for bytes that are no character of the
    /// encoding, for a sequence cut off by the end, for surrogates out of place and values above U+10FFFF; and what the
    /// raw reader throws.
    ///
    /// After an exception line is empty, and the reader stands where it met the fault. The next call tries again from
    /// there: when the raw reader has recovered it gives the whole line; bytes that are no text throw at each call.
    [[nodiscard]] virtual bool readLine(std::wstring& line) = 0;

    /// Closes the file that create opened, and is nothing over the caller's raw reader. Not to be read afterwards.
    virtual void close() = 0;

protected:
    TextReader();
};

}
