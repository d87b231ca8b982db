#include "orn/colour/DIBitmap.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

namespace {

// Read byte by byte, as a file of little-endian integers.
unsigned int field(DIBitmap const& bitmap, unsigned int offset, unsigned int size) {
    unsigned int value = 0;
    for (unsigned int i = size; i-- > 0;) value = value << 8 | bitmap.fileData()[offset + i];
    return value;
}

struct Geometry {
    unsigned int width;
    int height;
    unsigned short bitCount;
    unsigned int colours;
    unsigned int bitsAt, imageSize;
};

// Worked by hand from the file format.
constexpr Geometry geometries[] = {
    {3, 2, 24, 0, 54, 24}, {1, -4, 1, 2, 62, 16},    {32, 1, 1, 2, 62, 4},
    {33, 1, 1, 2, 62, 8},  {5, 3, 8, 256, 1078, 24}, {0, 7, 32, 0, 54, 0},
    {7, 0, 32, 0, 54, 0},  {9, -3, 4, 16, 118, 24},  {512, 512, 32, 0, 54, 1048576},
};

TEST(DIBitmap, HeadersAreThoseOfABitmapFile) {
    for (Geometry const& g : geometries) {
        SCOPED_TRACE(testing::Message() << g.width << " x " << g.height << " x " << g.bitCount);
        DIBitmap bitmap{g.width, g.height, g.bitCount, g.colours};
        auto const height = static_cast<unsigned int>(g.height);
        unsigned int offset = 0;
        // clang-format off
        for (auto const& [size, value] : {std::pair{2u, 19778u}, {4, g.bitsAt + g.imageSize}, {2, 0}, {2, 0}, {4, g.bitsAt},
                                          {4, 40}, {4, g.width}, {4, height}, {2, 1}, {2, g.bitCount}, {4, 0}, {4, 0},
                                          {4, 0}, {4, 0}, {4, g.colours}, {4, 0}}) {  // clang-format on
            EXPECT_EQ(field(bitmap, offset, size), value) << "at " << offset;
            offset += size;
        }
        EXPECT_TRUE(bitmap.fileSize() == g.bitsAt + g.imageSize && bitmap.bitsSize() == g.imageSize);
        EXPECT_EQ(bitmap.bits(), bitmap.fileData() + g.bitsAt);
        auto const header = reinterpret_cast<std::uintptr_t>(bitmap.header());
        EXPECT_TRUE(header == reinterpret_cast<std::uintptr_t>(bitmap.fileData()) + 14 && header % 4 == 0);
        std::memset(bitmap.bits(), 0x5A, bitmap.bitsSize());  // the pixels are all there
    }
}

TEST(DIBitmap, AFileCanBeReadIntoIt) {
    DIBitmap const source{3, 2, 24, 0};
    DIBitmap bitmap{source.fileSize() + 10};
    EXPECT_TRUE(field(bitmap, 0, 2) == 0 && field(bitmap, 2, 4) == 88 && bitmap.fileSize() == 88);
    std::memcpy(bitmap.fileData(), source.fileData(), 54);
    bitmap.fileData()[10] = 64;  // ten bytes between the headers and the pixels
    EXPECT_TRUE(std::as_const(bitmap).bits() == bitmap.fileData() + 64 && bitmap.bitsSize() == 24);
}

TEST(DIBitmap, AFileSmallerThanItsHeadersHasThemAsZeros) {
    for (unsigned int size : {0u, 1u, 13u, 53u}) {
        DIBitmap bitmap{size};
        EXPECT_TRUE(bitmap.fileSize() == size && bitmap.bits() == bitmap.fileData() && bitmap.bitsSize() == 0);
        for (unsigned int i = 6; i < 58; ++i) EXPECT_EQ(bitmap.fileData()[i], 0) << i;
        DIBitmap const copy{bitmap};
        EXPECT_EQ(std::memcmp(copy.fileData(), bitmap.fileData(), 58), 0);
    }
}

DIBitmap filled(unsigned int size, unsigned char value) {
    DIBitmap bitmap{size};
    std::memset(bitmap.fileData() + 6, value, size - 6);
    return bitmap;
}

TEST(DIBitmap, CopiesStandAloneAndMovesKeepTheBuffer) {
    static_assert(std::is_nothrow_move_constructible_v<DIBitmap> && std::is_nothrow_move_assignable_v<DIBitmap>);
    // Heap and virtual memory, in every combination of source and target.
    unsigned int const sizes[] = {100, 0xFFFFE, 0xFFFFF, 3'000'000};
    for (unsigned int from : sizes)
        for (unsigned int to : sizes) {
            DIBitmap source = filled(from, 0x33), target = filled(to, 0x44);
            unsigned char const* const buffer = source.fileData();
            target = source;
            ASSERT_EQ(target.fileSize(), from);
            EXPECT_EQ(std::memcmp(target.fileData(), buffer, from), 0);
            target.fileData()[from - 1] = 0x55;
            DIBitmap moved{std::move(source)};
            DIBitmap const none{source};  // of what was moved from
            target = std::move(moved);
            moved = none;
            moved = DIBitmap{target};
            EXPECT_TRUE(target.fileData() == buffer && moved.fileData()[from - 1] == 0x33);
            DIBitmap& alias = target;
            target = alias;
            target = std::move(alias);
            EXPECT_EQ(target.fileData()[from - 1], 0x33);
        }
}

TEST(DIBitmap, IsReadFromAndWrittenToAFileAndReachedByItsRows) {
    TemporaryFolder const folder;
    for (int height : {3, -3})
        for (unsigned short bitCount : {1, 4, 8, 16, 24, 32}) {
            DIBitmap bitmap{5, height, bitCount, bitCount <= 8 ? 1U << bitCount : 0};
            std::memset(bitmap.fileData() + 54, 0x77, bitmap.fileSize() - 54);
            EXPECT_TRUE(bitmap.width() == 5 && bitmap.height() == 3 && bitmap.rowSize() * 3 == bitmap.bitsSize());
            for (unsigned int y = 0; y < 3; ++y) {
                std::memset(bitmap.row(y), static_cast<int>(y), bitmap.rowSize());
                EXPECT_EQ(std::as_const(bitmap).row(y), bitmap.bits() + bitmap.rowSize() * (height < 0 ? y : 2 - y));
            }
            std::wstring const name = folder / L"a.bmp";
            bitmap.writeToFile(name);
            std::string const bytes{bitmap.fileData(), bitmap.fileData() + bitmap.fileSize()};
            EXPECT_EQ(folder.get("a.bmp"), bytes);
            // What stands behind the pixels does not count, nor does a size that says otherwise.
            std::string longer = bytes + "more";
            longer.replace(2, 4, "\xFF\xFF\xFF\xFF");
            for (std::string const& stored : {bytes, longer}) {
                DIBitmap const again = DIBitmap::createFromFile(folder.put("a.bmp", stored));
                ASSERT_EQ(again.fileSize(), bytes.size());
                EXPECT_EQ(std::memcmp(again.fileData(), bytes.data(), bytes.size()), 0);
            }
            EXPECT_EQ(thrown([&] { bitmap.row(3); }), L"logic_error: DIBitmap: there is no such row");
        }
    DIBitmap outside{3, 2, 24, 0};
    outside.fileData()[10] = 55;  // the pixels begin one byte later
    EXPECT_EQ(outside.row(1), outside.bits());
    EXPECT_THROW(outside.row(0), std::out_of_range);
}

std::wstring refusal(std::wstring const& name) {
    return thrown([&] { static_cast<void>(DIBitmap::createFromFile(name)); });
}

TEST(DIBitmap, AFileWhoseRowsCannotBeReachedIsRefusedByNameAndNeverWritten) {
    TemporaryFolder const folder;
    wchar_t const none[] = L"it is no bitmap file", header[] = L"its header is of an unknown kind",
                  bits[] = L"its pixels have an unknown number of bits", compressed[] = L"its pixels are compressed",
                  range[] = L"its width or height is out of range", end[] = L"it ends before its pixels do",
                  table[] = L"its colour table reaches into its pixels", size[] = L"its file size is beyond its buffer";
    auto const expectNotWritten = [&](DIBitmap const& bitmap, std::wstring const& flaw) {
        EXPECT_EQ(thrown([&] { bitmap.writeToFile(folder / L"b.bmp"); }), L"logic_error: DIBitmap: " + flaw);
    };
    // One field of a file of 74 bytes, its two colours at 54 and its three rows from 62 on.
    struct {
        unsigned int at, size, value;
        wchar_t const* flaw;
    } const cases[] = {
        {0, 2, 0x4D41, none},       {14, 4, 39, header},        {26, 2, 2, header},
        {28, 2, 25, bits},          {30, 4, 1, compressed},     {30, 4, 3, compressed},
        {18, 4, 0x80000000, range}, {22, 4, 0x80000000, range}, {10, 4, 61, table},
        {14, 4, 41, table},         {46, 4, 3, table},          {46, 4, ~0U, table},
        {10, 4, 63, end},           {10, 4, ~0U, end},          {22, 4, 4, end},
        {18, 4, 33, end},           {18, 4, 0x7FFFFFFF, end},   {22, 4, 0x7FFFFFFF, end},
        {22, 4, 0x80000001, end},
    };
    for (auto const& [at, length, value, flaw] : cases) {
        DIBitmap bitmap{3, 3, 1, 2};
        std::memset(bitmap.fileData() + 54, 0, bitmap.fileSize() - 54);
        std::memcpy(bitmap.fileData() + at, &value, length);
        std::wstring const name = folder.put("a.bmp", {bitmap.fileData(), bitmap.fileData() + bitmap.fileSize()});
        EXPECT_EQ(refusal(name), L"OrnError: " + name + L": " + flaw) << at << ' ' << value;
        expectNotWritten(bitmap, flaw);
    }
    for (std::string const& head : {std::string{}, std::string(53, 'B')})
        EXPECT_TRUE(refusal(folder.put("a.bmp", head)).ends_with(none));
    // A row of 2^32 bits, of which there is none; and 2^30 + 1 rows of four bytes, which are all in the file.
    DIBitmap wide{0, 0, 32, 0}, high{1, 1, 32, 0};
    wide.fileData()[21] = 8, high.fileData()[25] = 0x40;
    expectNotWritten(wide, range);
    for (DIBitmap const& large : {wide, high}) {
        std::wstring const name = folder.put("a.bmp", {large.fileData(), large.fileData() + 54});
        std::filesystem::resize_file(folder.path() / "a.bmp", 0x1'0000'0000 + 58);
        EXPECT_EQ(refusal(name), L"OrnError: " + name + L": " + range);
    }
    DIBitmap bitmap{3, 2, 24, 0};
    bitmap.fileData()[2] = 79;
    expectNotWritten(bitmap, size);
    expectNotWritten(DIBitmap{3, 2, 8, 0}, table);
    DIBitmap masked{2, 2, 32, 3};  // the table is the masks, and no colours are listed
    masked.fileData()[30] = 3, masked.fileData()[46] = 0;
    masked.writeToFile(folder / L"a.bmp");
    EXPECT_EQ(refusal(folder / L"a.bmp"), L"nothing");
    masked.fileData()[10] = 65;
    expectNotWritten(masked, table);
    EXPECT_EQ(folder.count(), 1);

    bitmap.fileData()[2] = 78;
    std::wstring const missing = folder / L"missing/a.bmp";
    for (auto const& failure : {refusal(missing), thrown([&] { bitmap.writeToFile(missing); })})
        EXPECT_TRUE(failure.starts_with(L"OrnError: ") && failure.find(missing) != failure.npos);
}

TEST(DIBitmap, SizesThatDoNotFitAreRefused) {
    for (unsigned int size : {0xFFFFFFFFu, 0xFFFFFFFEu})  // with two more bytes: 1 and 0
        try {
            ADD_FAILURE() << DIBitmap{size}.fileSize();
        } catch (std::bad_alloc const& error) {
            EXPECT_STREQ(error.what(), "bad allocation");
        }
    struct {
        unsigned int width;
        int height;
        unsigned short bitCount;
        unsigned int colours;
        // clang-format off
    } const refused[] = {
        {1, INT_MIN, 1, 0}, {0, INT_MIN, 0, 0},               // no |height|
        {0x08000000, 1, 32, 0}, {0x0FFFFFFF, 1, 16, 0},       // width x bits is 2^32, the second time with 31 more bits
        {0x10000, 0x4000, 32, 0}, {0x10000, -0x4000, 32, 0},  // the image is 2^32
        {0x10000, 0x3FFF, 32, 0x10000},                       // with its colour table it is
        {1, 1, 8, 0x40000000},                                // the colour table alone is
        {0xFFFFFFFF, INT_MAX, 0xFFFF, 0xFFFFFFFF},
    };  // clang-format on
    for (auto const& r : refused)
        EXPECT_THROW((DIBitmap{r.width, r.height, r.bitCount, r.colours}), std::bad_alloc)
            << r.width << " x " << r.height;
    // A header from outside.
    for (unsigned int at : {18U, 22U}) {
        DIBitmap bitmap{3, 2, 24, 0};
        std::memcpy(bitmap.fileData() + at, at == 18 ? "\xFF\xFF\xFF\xFF" : "\0\0\0\x80", 4);
        EXPECT_THROW(bitmap.bitsSize(), std::bad_alloc);
    }
}

}
