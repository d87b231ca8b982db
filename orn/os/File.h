/// Files by wide names, through the runtime's buffered streams. Failures leave the reason in errno.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace ORN::os {

/// Opens a file; null when that fails. A name that no file can have fails like a missing file. The mode is that of
/// fopen, and may have an x for a file that must be new. Programs that this one starts do not inherit the file.
std::FILE* openFile(std::wstring const& name, std::wstring const& mode);

/// Whether a file or a folder has the name.
bool fileExists(std::wstring const& name);

/// Standard input, as bytes. It must not be closed.
std::FILE* standardInput() noexcept;

/// Read or write, and return how many bytes that were; signals do not interrupt them. `failed` tells whether this call set the stream's error
/// indicator.
std::size_t readFile(std::FILE* file, void* buffer, std::size_t count, bool& failed) noexcept;
std::size_t writeFile(std::FILE* file, void const* buffer, std::size_t count, bool& failed) noexcept;

bool seekFile(std::FILE* file, std::int64_t offset, int origin) noexcept;  ///< origin: SEEK_SET, SEEK_CUR, SEEK_END
std::int64_t tellFile(std::FILE* file) noexcept;                           ///< -1 when it fails
bool flushFile(std::FILE* file) noexcept;
bool closeFile(std::FILE* file) noexcept;  ///< the stream is gone either way

/// The runtime's text for the current errno, in the multibyte code page.
std::string errnoText();

}
