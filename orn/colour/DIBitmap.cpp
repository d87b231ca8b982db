#include "orn/colour/DIBitmap.h"

#include "orn/foundation/Error.h"
#include "orn/os/Memory.h"
#include "orn/text/RawFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace {

constexpr DWORD largeSize = 0x100001;  // from here on the operating system gives the memory
constexpr DWORD leastSize = 60;        // the alignment, the file header and a whole BITMAPINFO

constexpr unsigned int fileHeaderSize = 14, infoHeaderSize = 40, headersSize = fileHeaderSize + infoHeaderSize;
constexpr std::uint16_t fileType = 0x4D42;  // "BM"

// Offsets of the headers' fields from the start of the file.
enum Field : unsigned int {
    atFileType = 0,
    atFileSize = 2,
    atBitsOffset = 10,
    atInfoHeaderSize = 14,
    atWidth = 18,
    atHeight = 22,
    atPlanes = 26,
    atBitCount = 28,
    atCompression = 30,
    atColoursUsed = 46,
};

class BadAllocation : public std::bad_alloc {
public:
    char const* what() const noexcept override { return "bad allocation"; }
};

DWORD fits(std::uint64_t size) {
    if (size > std::numeric_limits<DWORD>::max()) throw BadAllocation{};
    return static_cast<DWORD>(size);
}

// Takes small blocks from the heap, and large ones from the system, where they do not split the heap into pieces. release
// has to decide by the same size.
unsigned char* allocate(DWORD size) {
    void* const block =
        size < largeSize ? operator new(std::max(size, leastSize), std::nothrow) : ORN::os::allocateLarge(size);
    if (block == nullptr) throw BadAllocation{};
    return static_cast<unsigned char*>(block);
}

void release(unsigned char* block, DWORD size) noexcept {
    if (size < largeSize) {
        operator delete(block);
    } else {
        ORN::os::freeLarge(block, size);
    }
}

template <typename Value>
void put(unsigned char* file, Field field, Value value) noexcept {
    std::memcpy(file + field, &value, sizeof value);
}

template <typename Value>
Value get(unsigned char const* file, Field field) noexcept {
    Value value;
    // By bytes, because the headers of a file that is being read stand in an array without alignment.
    std::memcpy(&value, file + field, sizeof value);
    return value;
}

DWORD rowSizeOf(std::uint32_t width, std::uint16_t bitCount) {
    // In bytes: the bits of a row, rounded up to whole words of 32 bits.
    std::uint64_t const bits = fits(std::uint64_t{bitCount} * width + 31);
    return static_cast<DWORD>((bits >> 3) & 0x1FFFFFFC);
}

// Also of the least int, whose size no int holds.
std::uint32_t sizeOf(std::int32_t height) noexcept {
    auto const bits = static_cast<std::uint32_t>(height);
    return height < 0 ? 0 - bits : bits;
}

DWORD imageSize(std::uint32_t width, std::int32_t height, std::uint16_t bitCount) {
    std::uint64_t const rowSize = rowSizeOf(width, bitCount);
    if (height == std::numeric_limits<std::int32_t>::min()) throw BadAllocation{};
    return fits(rowSize * sizeOf(height));
}

// Says why the rows of a bitmap file of this length cannot be reached, or null. The headers come from anywhere, so each
// number is held to the length before another is computed from it: with 31 bits for the width and the height and 6 for the
// bits of a pixel no product exceeds 64 bits.
char const* flawOf(unsigned char const* file, std::uint64_t length) noexcept {
    if (length < headersSize || get<std::uint16_t>(file, atFileType) != fileType) return "it is no bitmap file";
    std::uint64_t const header = get<std::uint32_t>(file, atInfoHeaderSize);
    if (header < infoHeaderSize || get<std::uint16_t>(file, atPlanes) != 1) return "its header is of an unknown kind";

    unsigned int const bitCount = get<std::uint16_t>(file, atBitCount);
    static constexpr unsigned int bitCounts[] = {1, 4, 8, 16, 24, 32};
    if (std::find(std::begin(bitCounts), std::end(bitCounts), bitCount) == std::end(bitCounts))
        return "its pixels have an unknown number of bits";
    constexpr std::uint32_t plain = 0, maskedBits = 3;
    std::uint32_t const compression = get<std::uint32_t>(file, atCompression);
    bool const masked = compression == maskedBits && (bitCount == 16 || bitCount == 32);
    if (compression != plain && !masked) return "its pixels are compressed";

    auto const width = get<std::int32_t>(file, atWidth), height = get<std::int32_t>(file, atHeight);
    if (width < 0 || height == std::numeric_limits<std::int32_t>::min()) return "its width or height is out of range";
    // The three masks stand behind a header that is too short to hold them.
    std::uint64_t const masks = masked && header == infoHeaderSize ? 12 : 0;
    std::uint64_t const listed = get<std::uint32_t>(file, atColoursUsed);
    std::uint64_t const colours = listed == 0 && bitCount <= 8 ? 1U << bitCount : listed;
    std::uint64_t const bitsAt = get<std::uint32_t>(file, atBitsOffset);
    if (bitsAt < fileHeaderSize + header + masks + colours * 4) return "its colour table reaches into its pixels";
    std::uint64_t const rowBits = std::uint64_t{bitCount} * static_cast<std::uint32_t>(width) + 31;
    std::uint64_t const image = rowBits / 32 * 4 * sizeOf(height);
    if (bitsAt > length || image > length - bitsAt) return "it ends before its pixels do";
    // A bitmap counts in 32 bits, even where a file without rows, or one of more than 4 GiB, has the bytes.
    constexpr std::uint64_t most = std::numeric_limits<DWORD>::max();
    if (rowBits > most || bitsAt + image + 2 > most) return "its width or height is out of range";
    return nullptr;
}

[[noreturn]] void refuse(std::wstring const& fileName, std::string const& flaw) {
    throw ORN::OrnError{fileName + L": " + std::wstring{flaw.begin(), flaw.end()}};
}

}

DIBitmap::DIBitmap(unsigned int size)
    : allocatedSize_{fits(std::uint64_t{size} + 2)}, buffer_{allocate(allocatedSize_)} {
    // Headers that do not fit are there all the same, as zeros: reading them never leaves the buffer.
    if (size < headersSize) std::memset(buffer_, 0, leastSize);
    put<std::uint16_t>(fileData(), atFileType, 0);
    put<std::uint32_t>(fileData(), atFileSize, size);
}

DIBitmap::DIBitmap(unsigned int width, int height, unsigned short bitCount, unsigned int colours)
    : allocatedSize_{fits(std::uint64_t{colours} * 4 + headersSize + 2 + imageSize(width, height, bitCount))},
      buffer_{allocate(allocatedSize_)} {
    unsigned char* const file = fileData();
    // This fits 32 bits: the initialiser of the size has checked a sum that is larger.
    std::uint32_t const bitsAt = colours * 4 + headersSize;
    std::memset(file, 0, headersSize);
    put<std::uint16_t>(file, atFileType, fileType);
    put<std::uint32_t>(file, atFileSize, allocatedSize_ - 2);
    put<std::uint32_t>(file, atBitsOffset, bitsAt);
    put<std::uint32_t>(file, atInfoHeaderSize, infoHeaderSize);
    put<std::uint32_t>(file, atWidth, width);
    put<std::int32_t>(file, atHeight, height);
    put<std::uint16_t>(file, atPlanes, 1);
    put<std::uint16_t>(file, atBitCount, bitCount);
    put<std::uint32_t>(file, atColoursUsed, colours);
}

DIBitmap DIBitmap::createFromFile(std::wstring const& fileName) {
    std::unique_ptr<ORN::RawFileReader> const file{ORN::rawOpen(fileName)};
    unsigned char headers[headersSize];
    bool const whole = file->read(headers, headersSize) == headersSize;
    // A file with headers that are cut off counts as one of no bytes, of which flawOf reads nothing.
    char const* const flaw = flawOf(headers, whole ? file->seek(0, 2) : 0);
    if (flaw != nullptr) refuse(fileName, flaw);

    DWORD const image = imageSize(get<std::uint32_t>(headers, atWidth), get<std::int32_t>(headers, atHeight),
                                  get<std::uint16_t>(headers, atBitCount));
    DWORD const size = fits(std::uint64_t{get<std::uint32_t>(headers, atBitsOffset)} + image);
    DIBitmap bitmap{size};
    // Not read a second time: the bytes behind the headers that were looked at, whoever writes to the file meanwhile.
    std::memcpy(bitmap.fileData(), headers, headersSize);
    put<std::uint32_t>(bitmap.fileData(), atFileSize, size);
    file->seek(headersSize, 0);
    std::int64_t const rest = size - headersSize;
    if (file->read(bitmap.fileData() + headersSize, static_cast<std::uint64_t>(rest)) != rest)
        refuse(fileName, "it ends before its pixels do");
    return bitmap;
}

void DIBitmap::writeToFile(std::wstring const& fileName) const {
    // The caller may have changed the headers since the bitmap was made, and with them the file size.
    bool const held = fileSize() <= allocatedSize_ - 2;
    char const* const flaw = held ? flawOf(fileData(), fileSize()) : "its file size is beyond its buffer";
    if (flaw != nullptr) throw std::logic_error{std::string{"DIBitmap: "} + flaw};
    std::unique_ptr<ORN::RawFileWriter> const file{ORN::rawCreate(fileName)};
    file->write(fileData(), fileSize());
    file->close();
}

DIBitmap::DIBitmap(DIBitmap const& other)
    : allocatedSize_{other.allocatedSize_}, buffer_{other.buffer_ != nullptr ? allocate(allocatedSize_) : nullptr} {
    if (buffer_ != nullptr) std::memcpy(buffer_, other.buffer_, std::max(allocatedSize_, leastSize));
}

DIBitmap& DIBitmap::operator=(DIBitmap const& other) { return *this = DIBitmap{other}; }

DIBitmap::~DIBitmap() { release(buffer_, allocatedSize_); }

unsigned int DIBitmap::fileSize() const noexcept { return get<std::uint32_t>(fileData(), atFileSize); }

unsigned int DIBitmap::bitsOffset() const noexcept { return get<std::uint32_t>(fileData(), atBitsOffset); }

unsigned int DIBitmap::bitsSize() const {
    unsigned char const* const file = fileData();
    return imageSize(get<std::uint32_t>(file, atWidth), get<std::int32_t>(file, atHeight),
                     get<std::uint16_t>(file, atBitCount));
}

unsigned int DIBitmap::width() const noexcept { return get<std::uint32_t>(fileData(), atWidth); }

unsigned int DIBitmap::height() const noexcept { return sizeOf(get<std::int32_t>(fileData(), atHeight)); }

unsigned int DIBitmap::rowSize() const {
    return rowSizeOf(get<std::uint32_t>(fileData(), atWidth), get<std::uint16_t>(fileData(), atBitCount));
}

unsigned int DIBitmap::rowOffset(unsigned int y) const {
    unsigned int const rows = height();
    if (y >= rows) throw std::out_of_range{"DIBitmap: there is no such row"};
    bool const topDown = get<std::int32_t>(fileData(), atHeight) < 0;
    std::uint64_t const size = rowSize(), at = bitsOffset() + size * (topDown ? y : rows - 1 - y);
    if (at + size > allocatedSize_ - 2) throw std::out_of_range{"DIBitmap: the row lies outside of the buffer"};
    return static_cast<unsigned int>(at);
}
