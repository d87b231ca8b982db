#include "orn/text/Encoding.h"

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/os/ErrorText.h"
#include "orn/text/CodePoint.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>
#include <memory>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

using Byte = unsigned char;

// ---- Sixteen elements at a time

// Widens 16 bytes and returns how many of them, from the first, are ASCII; the units behind those mean nothing.
std::size_t widenASCII(Byte const* from, wchar_t* to) noexcept {
#if defined(__SSE2__)
    __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(from));
    __m128i const zero = _mm_setzero_si128();
    __m128i const units[2] = {_mm_unpacklo_epi8(bytes, zero), _mm_unpackhi_epi8(bytes, zero)};
    auto* const target = reinterpret_cast<__m128i*>(to);
    for (int i = 0; i < 2; ++i) {
        if constexpr (sizeof(wchar_t) == 2) {
            _mm_storeu_si128(target + i, units[i]);
        } else {
            _mm_storeu_si128(target + 2 * i, _mm_unpacklo_epi16(units[i], zero));
            _mm_storeu_si128(target + 2 * i + 1, _mm_unpackhi_epi16(units[i], zero));
        }
    }
    return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned int>(_mm_movemask_epi8(bytes)) | 0x10000u));
#else
    std::size_t count = 0;
    for (; count < 16 && from[count] < 0x80; ++count) to[count] = from[count];
    return count;
#endif
}

#if defined(__SSE2__)
// Eight units as signed 16-bit values; those of 0x8000 and more, and what is no unit, come out negative or above 0x7F.
__m128i loadUnits(wchar_t const* from) noexcept {
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    if constexpr (sizeof(wchar_t) == 2)
        return _mm_loadu_si128(source);
    else
        return _mm_packs_epi32(_mm_loadu_si128(source), _mm_loadu_si128(source + 1));
}
#endif

// Narrows 16 units and returns how many of them, from the first, are ASCII; the bytes behind those mean nothing.
std::size_t narrowASCII(wchar_t const* from, char* to) noexcept {
#if defined(__SSE2__)
    __m128i const low = loadUnits(from), high = loadUnits(from + 8);
    __m128i const bytes = _mm_packus_epi16(low, high);                       // top bit set: above 0x7F
    __m128i const others = _mm_or_si128(bytes, _mm_packs_epi16(low, high));  // or negative
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
    return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned int>(_mm_movemask_epi8(others)) | 0x10000u));
#else
    std::size_t count = 0;
    for (; count < 16 && static_cast<unsigned int>(from[count]) < 0x80; ++count)
        to[count] = static_cast<char>(from[count]);
    return count;
#endif
}

// ---- UTF-8

// Appends what decoding yields: one unit, a pair, or nothing for a value beyond Unicode.
wchar_t* appendUnits(unsigned int value, wchar_t* to) noexcept {
    if (value <= 0xFFFF) [[likely]] {
        *to = static_cast<wchar_t>(value);
        return to + 1;
    }
    return to + CodePoint::codePoint(value).wchars(to, 2);
}

// How many bytes follow a lead byte, and what the marks of lead and following bytes add up to in the sum.
constexpr int following(Byte lead) noexcept {
    return lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF8 ? 3 : lead < 0xFC ? 4 : 5;
}
constexpr unsigned int marks[] = {0, 0x3080, 0xE2080, 0x3C82080, 0xFA082080, 0x82082080};

// Decodes one sequence at p, with one test for its end: a sequence that lacks its last byte has the text's terminating
// zero in its place, by intention.
wchar_t* decodeOne(Byte const*& p, Byte const* end, wchar_t* to) noexcept {
    int const count = following(*p);
    if (end - p < count) {
        p = end;
        *to = 0xFFFD;
        return to + 1;
    }
    unsigned int value = 0;
    for (int i = 0; i <= count; ++i) value = value * 64 + p[i];
    p = end - p <= count ? end : p + count + 1;
    return appendUnits(value - marks[count], to);
}

// The same for a sequence that does not reach the text's end.
wchar_t* decodeInside(Byte const*& p, Byte const* end, wchar_t* to) noexcept {
    unsigned int const lead = *p;
    if (lead < 0xE0) {
        bool const two = lead >= 0xC0;
        unsigned int const value = two ? lead * 64 + p[1] - marks[1] : lead;
        p += two ? 2 : 1;
        return appendUnits(value, to);
    }
    if (lead < 0xF0) {
        unsigned int const value = lead * 4096 + p[1] * 64u + p[2] - marks[2];
        p += 3;
        return appendUnits(value, to);
    }
    return decodeOne(p, end, to);
}

int const vector = 16;  // elements that widenASCII and narrowASCII read, and may write

// Decodes from p on until the text ends or the piece is full, and returns the piece's end. Behind `full` there is room
// for a vector.
wchar_t* decode(Byte const*& p, Byte const* end, wchar_t* to, wchar_t const* full) noexcept {
    while (end - p > vector && to < full) {
        std::size_t const ascii = widenASCII(p, to);
        p += ascii;
        to += ascii;
        if (ascii == vector) continue;
        while (*p >= 0x80 && end - p > vector && to < full) to = decodeInside(p, end, to);
    }
    while (p < end && to < full) to = decodeOne(p, end, to);
    return to;
}

// Encodes the code point at p.
char* encodeOne(wchar_t const*& p, wchar_t const* end, char* to) noexcept {
    auto const unit = static_cast<unsigned int>(*p++);
    if (unit < 0x80) {
        to[0] = static_cast<char>(unit);
        return to + 1;
    }
    if (unit < 0x800) {
        to[0] = static_cast<char>(0xC0 | unit >> 6);
        to[1] = static_cast<char>(0x80 | (unit & 0x3F));
        return to + 2;
    }
    if (unit < 0x10000 && !isSurrogate(unit)) {
        to[0] = static_cast<char>(0xE0 | unit >> 12);
        to[1] = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
        to[2] = static_cast<char>(0x80 | (unit & 0x3F));
        return to + 3;
    }
    unsigned int value = unit;
    if (p != end && fromUTF16(value, unit, static_cast<unsigned int>(*p))) ++p;
    return to + CodePoint::codePoint(value).utf8(to, 6);
}

char* encode(wchar_t const*& p, wchar_t const* end, char* to, char const* full) noexcept {
    while (end - p >= vector && to < full) {
        std::size_t const ascii = narrowASCII(p, to);
        p += ascii;
        to += ascii;
        if (ascii == vector) continue;
        while (p != end && static_cast<unsigned int>(*p) >= 0x80 && to < full) to = encodeOne(p, end, to);
    }
    while (p != end && to < full) to = encodeOne(p, end, to);
    return to;
}

// The length of the result for well-formed text; malformed text may need a little more or less.
std::size_t expectedUnits(std::string const& text) noexcept {
    std::size_t count = 0;
    for (char const c : text) {
        auto const byte = static_cast<Byte>(c);
        count += static_cast<std::size_t>((byte & 0xC0) != 0x80) + static_cast<std::size_t>(byte >= 0xF0);
    }
    return count;
}

std::size_t expectedBytes(std::wstring const& text) noexcept {
    std::size_t count = 0;
    for (wchar_t const c : text) {
        auto const unit = static_cast<unsigned int>(c);
        count +=
            1 + static_cast<std::size_t>(unit >= 0x80) + static_cast<std::size_t>(unit >= 0x800 && !isSurrogate(unit));
    }
    return count;
}

// ---- The multibyte code page

// Room for short texts on the stack, for longer ones on the heap.
template <typename T, std::size_t N>
class Scratch {
public:
    explicit Scratch(std::size_t size)
        : heap_{size > N ? std::make_unique_for_overwrite<T[]>(size) : nullptr}, size_{size} {}

    T* data() noexcept { return heap_ ? heap_.get() : stack_; }
    int size() const noexcept { return static_cast<int>(std::min<std::size_t>(size_, INT_MAX)); }

private:
    T stack_[N];
    std::unique_ptr<T[]> heap_;
    std::size_t size_;
};

int platformLength(std::size_t length) {
    if (length > INT_MAX) throwIntCast();
    return static_cast<int>(length);
}

}

// Short results are built on the stack. Longer ones are appended piece by piece, which spares the string the filling
// with zeros that a resize would cost.

std::string utf8(std::wstring const& text) {
    char piece[4096];
    wchar_t const* p = text.data();
    wchar_t const* const end = p + text.size();
    std::string result;
    do {
        char const* const filled = encode(p, end, piece, std::end(piece) - vector);
        if (p != end && result.empty()) result.reserve(expectedBytes(text));
        result.append(piece, static_cast<std::size_t>(filled - piece));
    } while (p != end);
    return result;
}

std::wstring utf8(std::string const& text) {
    wchar_t piece[2048];
    auto const* p = reinterpret_cast<Byte const*>(text.data());
    Byte const* const end = p + text.size();
    std::wstring result;
    do {
        wchar_t const* const filled = decode(p, end, piece, std::end(piece) - vector);
        if (p != end && result.empty()) result.reserve(expectedUnits(text));
        result.append(piece, static_cast<std::size_t>(filled - piece));
    } while (p != end);
    return result;
}

std::wstring getWCS(char const* text) { return getWCS(text, std::strlen(text)); }
std::wstring getWCS(std::string const& text) { return getWCS(text.data(), text.size()); }

std::wstring getWCS(char const* text, std::size_t length) {
    if (length == 0) return {};
    int const bytes = platformLength(length);
    Scratch<wchar_t, 64> scratch{length + 1};
    int const units = ORN::os::multibyteToWide(text, bytes, scratch.data(), scratch.size());
    return {scratch.data(), static_cast<std::size_t>(units)};
}

std::string getMBS(wchar_t const* text) { return getMBS(text, std::char_traits<wchar_t>::length(text)); }
std::string getMBS(std::wstring const& text) { return getMBS(text.data(), text.size()); }

std::string getMBS(wchar_t const* text, std::size_t length) {
    if (length == 0) return {};
    int const units = platformLength(length);
    Scratch<char, 128> scratch{length * 5 + 1};
    int const bytes = ORN::os::wideToMultibyte(text, units, scratch.data(), scratch.size());
    return {scratch.data(), static_cast<std::size_t>(bytes)};
}

unsigned int packTo(std::wstring const& text, char* buffer, int size) {
    if (size <= 0) throw std::logic_error{"illegal buffer to pack wstring"};
    buffer[0] = '\0';
    int const room = size - 1;
    if (text.empty() || room == 0) return 0;

    // True when the prefix is in the buffer, false when it has no room there.
    unsigned int written = 0;
    auto const fits = [&](int length) {
        int const bytes = ORN::os::wideToMultibyte(text.data(), length, buffer, room);
        DWORD const error = bytes > 0 ? 0 : ORN::os::lastError();
        buffer[bytes] = '\0';
        written = static_cast<unsigned int>(bytes);
        DWORD const insufficientBuffer = 122;
        if (bytes == 0 && error != insufficientBuffer) throw WinError{L"WideCharToMultiByte in packTo", error};
        return bytes > 0;
    };
    if (fits(platformLength(text.size()))) return written;

    Scratch<int, 64> starts{text.size()};
    int* last = starts.data();
    for (std::size_t at = 0; at < text.size(); ++last) {
        *last = platformLength(at);
        unsigned int pair;
        bool const paired = at + 1 < text.size() && fromUTF16(pair, static_cast<unsigned int>(text[at]),
                                                              static_cast<unsigned int>(text[at + 1]));
        at += paired ? 2 : 1;
    }
    while (last != starts.data())
        if (fits(*--last)) return written;
    return 0;
}
