#include "orn/colour/DIBitmap.h"

#include "orn/os/Memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

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
    std::memcpy(&value, file + field, sizeof value);
    return value;
}

DWORD imageSize(std::uint32_t width, std::int32_t height, std::uint16_t bitCount) {
    std::uint64_t const bits = fits(std::uint64_t{bitCount} * width + 31);
    std::uint64_t const rowSize = (bits >> 3) & 0x1FFFFFFC;
    if (height == std::numeric_limits<std::int32_t>::min()) throw BadAllocation{};
    return fits(rowSize * static_cast<std::uint32_t>(height < 0 ? -height : height));
}

}

DIBitmap::DIBitmap(unsigned int size)
    : allocatedSize_{fits(std::uint64_t{size} + 2)}, buffer_{allocate(allocatedSize_)} {
    if (size < headersSize) std::memset(buffer_, 0, leastSize);
    put<std::uint16_t>(fileData(), atFileType, 0);
    put<std::uint32_t>(fileData(), atFileSize, size);
}

DIBitmap::DIBitmap(unsigned int width, int height, unsigned short bitCount, unsigned int colours)
    : allocatedSize_{fits(std::uint64_t{colours} * 4 + headersSize + 2 + imageSize(width, height, bitCount))},
      buffer_{allocate(allocatedSize_)} {
    unsigned char* const file = fileData();
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
