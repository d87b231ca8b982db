/// Wide strings into text files.
#pragma once

#include "orn/Export.h"
#include "orn/text/RawFile.h"
#include "orn/text/TextEncoding.h"

#include <string>

namespace ORN {

/// What happens to a file that exists.
enum TextOpenMode : int {
    textCreate,  ///< a new file, or an old one emptied; any value that is no mode counts as this one
    textAppend   ///< at the end of an old file, in its own encoding, or a new file
};

/// How lines end.
enum TextLineEnd : int {
    lineEndCRLF,  ///< CR LF
    lineEndLF     ///< LF alone; any other value means this one, too
};

/// Writes text through a buffer of its own. Deleting the writer writes the rest of the buffer and ignores any failure;
/// call close to learn of one. Only one thread at a time may use a writer.
///
/// When the raw writer refuses bytes, write and writeLine throw and take nothing of their text, so that the caller may
/// repeat the call. flush and close throw and keep what the raw writer refused. The writer goes on behind the last byte
/// that the file took, and writes nothing twice. There is one exception. When the first part of a text longer than the
/// buffer has been written and the rest is refused, the writer stays failed: every later call throws the same exception
/// and writes nothing.
class ORN_API TextWriter {
public:
    /// A new file (for textAppend also an empty one) begins with the encoding's byte order mark. An old file that is
    /// appended to keeps the encoding that its mark names, or the multibyte code page if it has no mark; the argument
    /// does not count. Throws OrnError when the file cannot be opened. Returns null, and makes no file, when an
    /// encoding is needed and the value is none. The caller deletes the writer.
    [[nodiscard]] static TextWriter* create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding);

    /// The same, with a choice of a mark for new files and of line ends. An old file without a mark is appended to in
    /// the encoding given.
    [[nodiscard]] static TextWriter* create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding,
                                            bool writeBOM, TextLineEnd lineEnd = lineEndCRLF);

    /// Writes to the raw writer, which stays the caller's and must outlive the text writer (or its close); the caller
    /// deletes the text writer. Null for a value that is no encoding.
    [[nodiscard]] static TextWriter* create(RawWriter& raw, TextEncoding encoding, bool writeBOM);

    /// The same, with a choice of how lines end.
    [[nodiscard]] static TextWriter* create(RawWriter& raw, TextEncoding encoding, bool writeBOM, TextLineEnd lineEnd);

    virtual ~TextWriter();

    /// Writes LF, CR, CR LF, NEL, LS and PS as the writer's line end, and FF as the character itself. Throws OrnError
    /// at an unpaired surrogate, a value above U+10FFFF or a character that the encoding lacks. What stands before it
    /// is written, and nothing takes its place.
    virtual void write(std::wstring const& text) = 0;
    virtual void writeLine(std::wstring const& text) = 0;  ///< the text, then a line end

    virtual void flush() = 0;  ///< hands everything to the raw writer, and flushes the raw writer
    virtual void close() = 0;  ///< flushes, and closes the file that create opened, once

protected:
    TextWriter();
};

}
