/// A bitmap in memory, laid out as the bitmap file that it is.
#pragma once

#include "orn/Export.h"
#include "orn/os/Types.h"

#include <string>
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

    /// Reads an uncompressed bitmap file of 1, 4, 8, 16, 24 or 32 bits a pixel, as far as its last pixel. It takes no more
    /// memory than the file has bytes. ORN::OrnError names the file and says what is wrong: the file cannot be opened or
    /// read, is no bitmap file, is of a kind that is not read (compressed, or with a header of less than 40 bytes), ends
    /// before its pixels do, or is larger than a bitmap can be.
    [[nodiscard]] static DIBitmap createFromFile(std::wstring const& fileName);

    /// Writes fileSize() bytes to a new file, or over an old one. std::logic_error, and no file, for a bitmap that
    /// createFromFile would refuse to read. ORN::OrnError names the file and the system's reason when it cannot be
    /// written; a part of it may be there then.
    void writeToFile(std::wstring const& fileName) const;

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

    /// What the info header says: pixels in a row, and rows, whichever way they run.
    /// @{
    unsigned int width() const noexcept;
    unsigned int height() const noexcept;
    /// @}

    unsigned int rowSize() const;  ///< the bytes from one row to the next, a multiple of 4

    /// A row of pixels, rowSize() bytes. Row 0 is the top one, whether the rows are stored from the bottom up or from the
    /// top down. std::out_of_range for a row that the bitmap does not have, or that lies outside of its buffer.
    /// @{
    unsigned char* row(unsigned int y) { return fileData() + rowOffset(y); }
    unsigned char const* row(unsigned int y) const { return fileData() + rowOffset(y); }
    /// @}

private:
    unsigned int bitsOffset() const noexcept;
    unsigned int rowOffset(unsigned int y) const;

    DWORD allocatedSize_;  // with the two bytes of alignment
    unsigned char* buffer_;
};

namespace ORN {

// For programs in which another library has such a name, too.
using ::DIBitmap;

}
