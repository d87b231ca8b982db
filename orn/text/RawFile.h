/// Byte streams with a name, and files as such streams. Files are binary, and programs that this one starts do not
/// inherit them. Every failure is an ORN::OrnError that names the file and the runtime's reason. After a call that
/// failed, the next one may succeed. Only one thread at a time may use a stream.
#pragma once

#include "orn/Export.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace ORN {

/// A source of bytes. A read that throws counts as having read nothing.
class ORN_API RawReader {
public:
    virtual ~RawReader();

    virtual std::wstring name() const = 0;  ///< for messages

    /// Reads at most count bytes, and returns how many it has read; 0 at the end.
    [[nodiscard]] virtual std::int64_t read(void* buffer, std::uint64_t count) = 0;
};

/// A sink for bytes. A write that throws counts as having written nothing.
class ORN_API RawWriter {
public:
    virtual ~RawWriter();

    virtual std::wstring name() const = 0;                            ///< for messages
    virtual void write(void const* buffer, std::uint64_t count) = 0;  ///< all count bytes
    virtual void flush() = 0;                                         ///< hands buffered bytes to the system
};

/// A file open for reading. Its name is the one given when it was opened. read waits until count bytes have arrived or
/// the file ends, on a pipe as well. At the end of the file it returns what others have appended since.
class ORN_API RawFileReader : public RawReader {
public:
    ~RawFileReader() override;

    /// Moves to offset bytes from the start (origin 0), the current position (1) or the end (any other), and returns
    /// the new position from the start. seek(0, 1) only asks for the position.
    virtual std::uint64_t seek(std::int64_t offset, std::int32_t origin) = 0;

    /// A second close does nothing. After close, every call but name and close throws std::logic_error.
    virtual void close() = 0;
};

/// A file open for writing, which can also be read and sought. Reading and writing may alternate freely. The file
/// collects small pieces before it hands them to the system. When the system does not take them, a later call throws,
/// keeps the rest, and the call after that tries again. A write of thousands of bytes that throws may have written the
/// first of them; seek(0, 1) tells how many. A TextWriter takes care of that itself.
class ORN_API RawFileWriter : public RawFileReader, public RawWriter {
public:
    ~RawFileWriter() override;

    std::wstring name() const override = 0;
};

/// The caller deletes what these return. Deleting an open file closes it and ignores any failure.
[[nodiscard]] ORN_API RawFileReader* rawOpen(std::wstring const& name);    ///< an existing file, to read
[[nodiscard]] ORN_API RawFileWriter* rawCreate(std::wstring const& name);  ///< a new file, or an old one emptied
[[nodiscard]] ORN_API RawFileWriter* rawAppend(std::wstring const& name);  ///< new or old; writes always go to the end
[[nodiscard]] ORN_API RawFileReader* rawStandardInput();                   ///< standard input, which stays open

/// Opens a stream of the runtime, which the caller closes. Null, with errno set, when the file cannot be opened. The
/// mode is that of fopen. Never throws.
[[nodiscard]] ORN_API std::FILE* fileOpen(std::wstring const& name, std::wstring const& mode) noexcept;

}
