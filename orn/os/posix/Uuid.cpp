#include "orn/os/Uuid.h"

#include "orn/os/Fault.h"
#include "orn/os/Status.h"

#include <unistd.h>

#include <algorithm>
#include <compare>
#include <iterator>
#include <tuple>

namespace ORN::os {

namespace {

/// Makes a value of its bytes. Each field has its most significant byte first.
Uuid fromBytes(unsigned char const (&bytes)[16]) noexcept {
    Uuid uuid{};
    uuid.data1 =
        std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
    uuid.data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    uuid.data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    std::copy(bytes + 8, bytes + 16, uuid.data4);
    return uuid;
}

/// The value of a hexadecimal digit, or -1 for any other character.
int digit(wchar_t c) noexcept {
    if (c >= L'0' && c <= L'9') return static_cast<int>(c - L'0');
    // The bit that tells small letters from capitals. Characters beyond ASCII keep their other bits, and are none of the
    // six.
    wchar_t const lower = c | 0x20;
    return lower >= L'a' && lower <= L'f' ? static_cast<int>(lower - L'a') + 10 : -1;
}

}

LONG createUuid(Uuid& uuid) noexcept {
    unsigned char bytes[16];
    if (::getentropy(bytes, sizeof bytes) != 0) return LONG{errorUuidNoAddress};
    // RFC 4122, section 4.4: version 4, of random bits, in the variant that the document describes.
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    // As on Windows the number is there even if its status is a failure.
    uuid = fromBytes(bytes);
    return ORN_OS_REFUSED("UuidCreate") ? LONG{errorUuidLocalOnly} : 0;
}

LONG createNilUuid(Uuid& uuid) noexcept {
    if (ORN_OS_REFUSED("UuidCreateNil")) return LONG{errorOutOfMemory};
    uuid = Uuid{};
    return 0;
}

LONG parseUuid(wchar_t const* text, Uuid& uuid) noexcept {
    unsigned char bytes[16] = {};
    int digits = 0;
    for (int position = 0; position < 36; ++position) {
        wchar_t const c = text[position];
        if (position == 8 || position == 13 || position == 18 || position == 23) {
            if (c != L'-') return errorUuidInvalidText;
            continue;
        }
        // The terminator is no digit either, so nothing behind it is read.
        int const value = digit(c);
        if (value < 0) return errorUuidInvalidText;
        bytes[digits / 2] = static_cast<unsigned char>(bytes[digits / 2] << 4 | value);
        ++digits;
    }
    if (text[36] != L'\0') return errorUuidInvalidText;
    uuid = fromBytes(bytes);
    return 0;
}

bool uuidIsNil(Uuid const& uuid, LONG& status) noexcept {
    Uuid const nil{};
    LONG ignored;
    status = ORN_OS_REFUSED("UuidIsNil") ? LONG{errorInvalidParameter} : 0;
    return compareUuids(uuid, nil, ignored) == 0;
}

int compareUuids(Uuid const& a, Uuid const& b, LONG& status) noexcept {
    status = ORN_OS_REFUSED("UuidCompare") ? LONG{errorInvalidParameter} : 0;
    // First the three numbers, then the bytes.
    auto order = std::tie(a.data1, a.data2, a.data3) <=> std::tie(b.data1, b.data2, b.data3);
    if (order == 0) {
        order = std::lexicographical_compare_three_way(std::begin(a.data4), std::end(a.data4), std::begin(b.data4),
                                                       std::end(b.data4));
    }
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}
