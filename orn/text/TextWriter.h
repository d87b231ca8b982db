/// Wide strings into text files.
#pragma once

#include "orn/Export.h"
#include "orn/text/RawFile.h"
#include "orn/text/TextEncoding.h"

#include <string>

namespace ORN {

/// What becomes of a file that is there.
enum TextOpenMode : int {
    textCreate,  ///< a new file, or an old one emptied; any value that is no mode counts as this one
    textAppend   ///< at the end of an old file, in its own encoding, or a new file
};

/// How lines end.
enum TextLineEnd : int {
    lineEndCRLF,  ///< CR LF
    lineEndLF     ///< LF alone; also any value that is none of these
};

/// Writes text through a buffer of its own; deleting the writer writes out what is left in it and ignores any failure,
/// so call close to hear of one. One thread at a time.
///
/// When the raw writer refuses bytes, write and writeLine throw and have taken nothing of their text: nothing is lost, and
/// the call may be made again. flush and close throw and keep what they could not hand over. The writer goes on behind the
/// last byte that the file took, and writes nothing twice. Only when the head of a text longer than the buffer has gone out
/// and its tail is refused does the writer stay failed: every later call throws the same, and no more is written.
class ORN_API TextWriter {
public:
    /// A new file (for textAppend also an empty one) begins with the encoding's byte order mark. A file that is appended
    /// to keeps the encoding that its mark names, or the multibyte code page without one, whatever is asked for here.
    /// Throws OrnError when the file cannot be opened; null, and no file made, for a value that is no encoding where one is
    /// needed. The caller deletes the writer.
    [[nodiscard]] static TextWriter* create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding);

    /// The same, with a choice: a new file with or without a mark, and how lines end. A file without a mark that is appended
    /// to goes on in the encoding given.
    [[nodiscard]] static TextWriter* create(std::wstring const& filename, TextOpenMode mode, TextEncoding encoding,
                                            bool writeBOM, TextLineEnd lineEnd = lineEndCRLF);

    /// Writes to the raw writer, which stays the caller's and must outlive the text writer (or its close); the caller
    /// deletes the text writer. Null for a value that is no encoding.
    [[nodiscard]] static TextWriter* create(RawWriter& raw, TextEncoding encoding, bool writeBOM);

    /// The same, with a choice of how lines end.
    [[nodiscard]] static TextWriter* create(RawWriter& raw, TextEncoding encoding, bool writeBOM, TextLineEnd lineEnd);

    virtual ~TextWriter();

    /// LF, CR, CR LF, NEL, LS and PS are all written as the writer's line end, FF as the character that it is. Throws
    /// OrnError at an unpaired surrogate, a value above U+10FFFF or a character that the encoding lacks, after writing
    /// what stands before it; nothing is put in its place.
    virtual void write(std::wstring const& text) = 0;
    virtual void writeLine(std::wstring const& text) = 0;  ///< the text, then a line end

    virtual void flush() = 0;  ///< hands everything to the raw writer, and flushes that
    virtual void close() = 0;  ///< flush; and closes the file that create opened, once

protected:
    TextWriter();
};

}
