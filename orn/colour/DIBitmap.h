/// A bitmap in memory, laid out as the bitmap file that it is.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <utility>

/// Owns two bytes of alignment and behind them a whole bitmap file: file header (14 bytes), info header (40 bytes, at
/// a 4-byte boundary), colour table, pixel rows (each a multiple of 4 bytes; from the bottom up, or from the top down
/// when the height is negative). It can be written to a file as it stands, or given to drawing calls by header and
/// pixels.
///
/// A size that does not fit 32 bits, or that the system does not have, throws std::bad_alloc ("bad allocation").
class ORN_API DIBitmap {
public:
    /// Room for a bitmap file of this size, which the caller fills: the file type is 0 and the size field set, the rest
    /// is undetermined. In one that is smaller than its headers these are all there and can be read, as zeros.
    explicit DIBitmap(unsigned int size);

    /// A bitmap with its headers; its colour table and its pixels are undetermined. Colours: entries of the colour
    /// table.
    DIBitmap(unsigned int width, int height, unsigned short bitCount, unsigned int colours);

    DIBitmap(DIBitmap const&);             ///< a bitmap of its own, byte for byte
    DIBitmap& operator=(DIBitmap const&);  ///< when it throws, this bitmap is as it was

    /// Takes the buffer, which stays where it is. The other has none then: it may be copied, given another bitmap, and
    /// destroyed, and nothing else.
    /// @{
    DIBitmap(DIBitmap&& other) noexcept
        : allocatedSize_{std::exchange(other.allocatedSize_, 0)}, buffer_{std::exchange(other.buffer_, nullptr)} {}
    DIBitmap& operator=(DIBitmap&& other) noexcept {
        DIBitmap taken{std::move(other)};
        std::swap(allocatedSize_, taken.allocatedSize_);
        std::swap(buffer_, taken.buffer_);
        return *this;
    }
    /// @}

    ~DIBitmap();

    /// From the first byte of the file header, fileSize() bytes.
    /// @{
    unsigned char* fileData() noexcept { return buffer_ + 2; }
    unsigned char const* fileData() const noexcept { return buffer_ + 2; }
    /// @}

    unsigned int fileSize() const noexcept;  ///< as the file header says, in bytes

    /// The info header, and the colour table behind it.
    /// @{
    BITMAPINFO* header() noexcept { return reinterpret_cast<BITMAPINFO*>(buffer_ + 16); }
    BITMAPINFO const* header() const noexcept { return reinterpret_cast<BITMAPINFO const*>(buffer_ + 16); }
    /// @}

    /// The pixels: where the file header says. Whoever fills a bitmap from a file of unknown origin checks first that
    /// their offset and bitsSize() lie within the file.
    /// @{
    unsigned char* bits() noexcept { return fileData() + bitsOffset(); }
    unsigned char const* bits() const noexcept { return fileData() + bitsOffset(); }
    /// @}

    /// |height| rows of the width and the bit count in the info header, in bytes.
    unsigned int bitsSize() const;

private:
    unsigned int bitsOffset() const noexcept;

    DWORD allocatedSize_;  ///< with the two bytes of alignment
    unsigned char* buffer_;
};

namespace ORN {

// For programs in which another library has such a name, too.
using ::DIBitmap;

}
