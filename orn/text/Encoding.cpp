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

// Widens 16 bytes and returns a bit for each that is not ASCII; the units from the first of those on mean nothing.
unsigned int widenASCII(Byte const* from, wchar_t* to) noexcept {
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
    return static_cast<unsigned int>(_mm_movemask_epi8(bytes));
#else
    for (unsigned int i = 0; i < 16; ++i) {
        if (from[i] >= 0x80) return 1u << i;
        to[i] = from[i];
    }
    return 0;
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

// Eight units, each in 16 bits.
__m128i loadUnitsWhole(wchar_t const* from) noexcept {
    if constexpr (sizeof(wchar_t) == 2) return loadUnits(from);
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    auto const low = [](__m128i units) { return _mm_srai_epi32(_mm_slli_epi32(units, 16), 16); };
    return _mm_packs_epi32(low(_mm_loadu_si128(source)), low(_mm_loadu_si128(source + 1)));
}
#endif

// Narrows 16 units and returns a bit for each that is not ASCII; the bytes from the first of those on mean nothing.
unsigned int narrowASCII(wchar_t const* from, char* to) noexcept {
#if defined(__SSE2__)
    __m128i const low = loadUnits(from), high = loadUnits(from + 8);
    __m128i const bytes = _mm_packus_epi16(low, high);                       // top bit set: above 0x7F
    __m128i const others = _mm_or_si128(bytes, _mm_packs_epi16(low, high));  // or negative
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
    return static_cast<unsigned int>(_mm_movemask_epi8(others));
#else
    for (unsigned int i = 0; i < 16; ++i) {
        if (static_cast<unsigned int>(from[i]) >= 0x80) return 1u << i;
        to[i] = static_cast<char>(from[i]);
    }
    return 0;
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
        unsigned int const others = widenASCII(p, to);
        if (others == 0) {
            p += vector;
            to += vector;
            continue;
        }
        int const ascii = std::countr_zero(others);
        p += ascii;
        to += ascii;
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
        unsigned int const others = narrowASCII(p, to);
        if (others == 0) {
            p += vector;
            to += vector;
            continue;
        }
        int const ascii = std::countr_zero(others);
        p += ascii;
        to += ascii;
        while (p != end && static_cast<unsigned int>(*p) >= 0x80 && to < full) to = encodeOne(p, end, to);
    }
    while (p != end && to < full) to = encodeOne(p, end, to);
    return to;
}

// ---- Whole texts

#if defined(__SSE2__)
// The sum of the bytes of a vector.
std::size_t sum(__m128i bytes) noexcept {
    __m128i const halves = _mm_sad_epu8(bytes, _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_cvtsi128_si64(halves) + _mm_cvtsi128_si64(_mm_unpackhi_epi64(halves, halves)));
}
#endif

// The length of the result for well-formed text; malformed text may need a little more or less.
std::size_t expectedUnits(Byte const* p, Byte const* end) noexcept {
    std::size_t count = 0;
#if defined(__SSE2__)
    __m128i const continuation = _mm_set1_epi8(static_cast<char>(0xC0)), four = _mm_set1_epi8(static_cast<char>(0xF0));
    while (end - p >= vector) {
        __m128i counts = _mm_setzero_si128();
        for (int rounds = 127; rounds > 0 && end - p >= vector; --rounds, p += vector) {
            __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
            __m128i const noPairs = _mm_cmplt_epi8(bytes, continuation);  // as signed: 0x80 to 0xBF
            __m128i const pairs = _mm_cmpeq_epi8(_mm_max_epu8(bytes, four), bytes);
            counts = _mm_sub_epi8(counts, _mm_sub_epi8(pairs, noPairs));
            counts = _mm_add_epi8(counts, _mm_set1_epi8(1));
        }
        count += sum(counts);
    }
#endif
    for (; p != end; ++p) count += static_cast<std::size_t>((*p & 0xC0) != 0x80) + static_cast<std::size_t>(*p >= 0xF0);
    return count;
}

std::size_t expectedBytes(wchar_t const* p, wchar_t const* end) noexcept {
    std::size_t count = static_cast<std::size_t>(end - p);
#if defined(__SSE2__)
    __m128i const zero = _mm_setzero_si128(), two = _mm_set1_epi16(0x7F), three = _mm_set1_epi16(0x7FF);
    __m128i const surrogates = _mm_set1_epi16(static_cast<short>(0xD800)),
                  mask = _mm_set1_epi16(static_cast<short>(0xF800));
    while (end - p >= vector) {
        __m128i counts = zero;
        for (int rounds = 127; rounds > 0 && end - p >= vector; --rounds, p += vector) {
            __m128i more[2];
            for (int i = 0; i < 2; ++i) {
                __m128i const units = loadUnitsWhole(p + 8 * i);
                __m128i const one = _mm_cmpeq_epi16(_mm_subs_epu16(units, two), zero);
                __m128i const oneOrTwo = _mm_or_si128(_mm_cmpeq_epi16(_mm_subs_epu16(units, three), zero),
                                                      _mm_cmpeq_epi16(_mm_and_si128(units, mask), surrogates));
                more[i] = _mm_add_epi16(one, oneOrTwo);  // minus how many bytes below three
            }
            counts = _mm_add_epi8(counts, _mm_add_epi8(_mm_set1_epi8(2), _mm_packs_epi16(more[0], more[1])));
        }
        count += sum(counts);
    }
#endif
    for (; p != end; ++p) {
        auto const unit = static_cast<unsigned int>(*p);
        count += static_cast<std::size_t>(unit >= 0x80) + static_cast<std::size_t>(unit >= 0x800 && !isSurrogate(unit));
    }
    return count;
}

// Converts from p to end. A short text is built on the stack. A long one is written straight into the string, which is
// lengthened in small steps, so that what this fills with zeros is still in the nearest cache when it is overwritten.
template <typename To, typename From>
std::basic_string<To> converted(From const* p, From const* end,
                                To* (*convert)(From const*&, From const*, To*, To const*),
                                std::size_t (*expected)(From const*, From const*)) {
    std::size_t const step = 1024;
    To piece[step];
    auto filled = static_cast<std::size_t>(convert(p, end, piece, std::end(piece) - vector) - piece);
    std::basic_string<To> result;
    if (p != end) result.reserve(filled + expected(p, end) + 2 * vector);
    result.append(piece, filled);
    while (p != end) {
        std::size_t const available = result.capacity() - filled;
        result.resize(filled + (available >= 2 * vector ? std::min(step, available) : step));
        To* const data = result.data();
        filled = static_cast<std::size_t>(convert(p, end, data + filled, data + result.size() - vector) - data);
    }
    result.resize(filled);
    return result;
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

std::string utf8(std::wstring const& text) {
    return converted<char>(text.data(), text.data() + text.size(), encode, expectedBytes);
}

std::wstring utf8(std::string const& text) {
    auto const* const bytes = reinterpret_cast<Byte const*>(text.data());
    return converted<wchar_t>(bytes, bytes + text.size(), decode, expectedUnits);
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
