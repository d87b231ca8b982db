/// Byte streams with a name, and files as such streams. Files are binary; every failure is an ORN::OrnError that names the
/// file and the runtime's reason. A stream is used by one thread at a time.
#pragma once

#include "orn/Export.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace ORN {

/// A source of bytes.
class ORN_API RawReader {
public:
    virtual ~RawReader();

    virtual std::wstring name() const = 0;                             ///< for messages
    virtual std::int64_t read(void* buffer, std::uint64_t count) = 0;  ///< how many of count came; 0 at the end
};

/// A sink for bytes.
class ORN_API RawWriter {
public:
    virtual ~RawWriter();

    virtual std::wstring name() const = 0;                            ///< for messages
    virtual void write(void const* buffer, std::uint64_t count) = 0;  ///< all count bytes
    virtual void flush() = 0;                                         ///< hands buffered bytes to the system
};

/// A file open for reading. Its name is the one given when it was opened.
class ORN_API RawFileReader : public RawReader {
public:
    ~RawFileReader() override;

    /// Moves to offset bytes from the start (origin 0), the current position (1) or the end (any other), and returns the
    /// new position from the start. seek(0, 1) only asks for the position.
    virtual std::uint64_t seek(std::int64_t offset, std::int32_t origin) = 0;

    /// A second close does nothing. After close, only name, close and deletion are left; all else is a std::logic_error.
    virtual void close() = 0;
};

/// A file open for writing, which can also be read and sought; reading and writing may alternate freely.
class ORN_API RawFileWriter : public RawFileReader, public RawWriter {
public:
    ~RawFileWriter() override;

    std::wstring name() const override = 0;
};

/// The caller deletes what these return. Deleting an open file closes it and ignores any failure.
ORN_API RawFileReader* rawOpen(std::wstring const& name);    ///< an existing file, to read
ORN_API RawFileWriter* rawCreate(std::wstring const& name);  ///< a new file, or an old one emptied
ORN_API RawFileWriter* rawAppend(std::wstring const& name);  ///< new or old; writes always go to the end

/// The runtime's stream, which the caller closes; null, with errno set, when the file cannot be opened. mode is that of
/// fopen. Never throws.
ORN_API std::FILE* fileOpen(std::wstring const& name, std::wstring const& mode) noexcept;

}
