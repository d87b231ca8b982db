#include "orn/text/Encoding.h"

#include "orn/foundation/Error.h"
#include "orn/os/CodePage.h"
#include "orn/os/ErrorText.h"
#include "orn/text/CodePoint.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

using Byte = unsigned char;

int const vector = 16;  // elements that are looked at together
int const slack = 84;   // elements of the source that must be there for the fast ways
int const room = 208;   // elements of the target that the fast ways may use beyond where it counts as full

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

// The upper six bits of each of eight units; of what is no unit, something above 0x3F.
__m128i loadHeads(wchar_t const* from) noexcept {
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    if constexpr (sizeof(wchar_t) == 2)
        return _mm_srli_epi16(_mm_loadu_si128(source), 10);
    else
        return _mm_packs_epi32(_mm_srli_epi32(_mm_loadu_si128(source), 10),
                               _mm_srli_epi32(_mm_loadu_si128(source + 1), 10));
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

#if defined(__SSE2__)
int const block = 64;  // bytes or units whose structure is looked at together

// A bit for each byte of the block that is at least `limit`, which is at least 0x80.
std::uint64_t atLeast(__m128i const (&bytes)[4], int limit) noexcept {
    __m128i const below = _mm_set1_epi8(static_cast<char>(limit - 0x80));
    std::uint64_t bits = 0;
    for (int i = 3; i >= 0; --i)
        bits = bits << 16 | static_cast<unsigned int>(_mm_movemask_epi8(_mm_subs_epu8(bytes[i], below)));
    return bits;
}

// Big-endian, from four bytes.
std::uint32_t loadWord(Byte const* from) noexcept {
    std::uint32_t word;
    std::memcpy(&word, from, sizeof word);
    return __builtin_bswap32(word);
}

// What `more` + 1 bytes of one sequence, in the word's lower end, decode to.
std::uint32_t decodeWord(std::uint32_t word, unsigned int more) noexcept {
    std::uint32_t const halves = (word & 0xFF00FF) + (word >> 2 & 0x3FC03FC0);
    return (halves & 0xFFFF) + (halves >> 16 << 12) - marks[more];
}

// Decodes a block of well-formed sequences of one to three bytes, but for one that is cut off by its end: widens the
// whole block as if it were ASCII, and then what lies behind each longer sequence once more, in its own place. False, and
// nothing done, when there are others. Reads and writes up to 16 elements behind the block.
bool decodeMostlyASCII(Byte const*& p, wchar_t*& to) noexcept {
    __m128i bytes[4];
    for (int i = 0; i < 4; ++i) bytes[i] = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p) + i);
    std::uint64_t const leads = atLeast(bytes, 0xC0), threes = atLeast(bytes, 0xE0);
    std::uint64_t const continuations = atLeast(bytes, 0x80) & ~leads;
    if ((leads << 1 | threes << 2) != continuations || atLeast(bytes, 0xF0) != 0) return false;

    // How many continuation bytes there are in the first 8, 16, 24, ... bytes: a byte of the product each.
    std::uint64_t sums = continuations - (continuations >> 1 & 0x5555555555555555);
    sums = (sums & 0x3333333333333333) + (sums >> 2 & 0x3333333333333333);
    sums = ((sums + (sums >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101;
    widenASCII(p, to);
    for (unsigned int i = 1; i < 4; ++i) widenASCII(p + 16 * i, to + 16 * i - (sums >> (16 * i - 8) & 0xFF));

    unsigned int const size = leads >> 63 != 0 ? 63 : threes >> 62 != 0 ? 62 : 64;
    unsigned int saved = 0;
    for (std::uint64_t left = size == 64 ? leads : leads & ~(~std::uint64_t{0} << size); left != 0; left &= left - 1) {
        auto const at = static_cast<unsigned int>(std::countr_zero(left));
        unsigned int const more = 1 + (threes >> at & 1);
        wchar_t* const unit = to + at - saved;
        widenASCII(p + at + 1 + more, unit + 1);
        *unit = static_cast<wchar_t>(decodeWord(loadWord(p + at) >> (24 - 8 * more), more));
        saved += more;
    }
    p += size;
    to += size - saved;
    return true;
}

// Decodes a block of well-formed sequences of any lengths, but for its last one, without branching on the lengths.
// False, and nothing done, when there are others, or none of four bytes, or some that are overlong or of plane 16 and
// beyond. May read three bytes behind the block, and write a unit too many.
bool decodeBlock(Byte const*& p, wchar_t*& to) noexcept {
    __m128i bytes[4];
    for (int i = 0; i < 4; ++i) bytes[i] = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p) + i);
    std::uint64_t const leads = atLeast(bytes, 0xC0), threes = atLeast(bytes, 0xE0), fours = atLeast(bytes, 0xF0);
    std::uint64_t const continuations = atLeast(bytes, 0x80) & ~leads;
    std::uint64_t const overlong = fours << 1 & ~atLeast(bytes, 0x90);
    bool const wellFormed = (leads << 1 | threes << 2 | fours << 3) == continuations;
    if (!wellFormed || fours == 0 || overlong != 0 || atLeast(bytes, 0xF4) != 0) return false;

    // By the sequence's length: how far the first unit's bits are to be moved, and what is to be added to them.
    static constexpr unsigned char shifts[] = {0, 0, 0, 10};
    static constexpr std::uint32_t bases[] = {0, 0, 0, 0xD7C0};
    std::uint64_t starts = ~continuations;
    wchar_t* unit = to;
    unsigned int at = 0;
    while ((starts &= starts - 1) != 0) {
        auto const next = static_cast<unsigned int>(std::countr_zero(starts)), more = next - at - 1;
        std::uint32_t const value = decodeWord(loadWord(p + at) >> (24 - 8 * more), more);
        unit[0] = static_cast<wchar_t>((value >> shifts[more]) + bases[more]);
        unit[1] = static_cast<wchar_t>(0xDC00 | (value & 0x3FF));
        unit += 1 + (more + 1) / 4;
        at = next;
    }
    p += at;
    to = unit;
    return true;
}
#endif

// Decodes from p on until the text ends or the piece is full, and returns the piece's end. Behind `full` there is room
// for a block.
wchar_t* decode(Byte const*& p, Byte const* end, wchar_t* to, wchar_t const* full) noexcept {
    while (end - p > slack && to < full) {
        unsigned int const others = widenASCII(p, to);
        if (others == 0) {
            p += vector;
            to += vector;
            continue;
        }
        int const ascii = std::countr_zero(others);
#if defined(__SSE2__)
        if (p[ascii] < 0xE0 && decodeMostlyASCII(p, to)) continue;
#endif
        p += ascii;
        to += ascii;
        to = decodeOne(p, end, to);
        while (end - p > slack && to < full && *p >= 0xE0) {
            if (*p < 0xF0) {
                unsigned int const value = *p * 4096u + p[1] * 64u + p[2] - marks[2];
                p += 3;
                to = appendUnits(value, to);
                continue;
            }
#if defined(__SSE2__)
            if (decodeBlock(p, to)) {
                while (end - p > slack && to < full && decodeBlock(p, to)) {}
                continue;
            }
#endif
            to = decodeOne(p, end, to);
        }
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

// Encodes the text of one or two bytes a character that Latin letters make, as decodeLatin decodes it.
char* encodeLatin(wchar_t const*& p, wchar_t const* end, char* to, char const* full) noexcept {
    for (int steps = 32; steps > 0 && end - p > vector && to < full; --steps) {
        int const ascii = std::countr_zero(narrowASCII(p, to) | 0x10000u);
        p += ascii;
        to += ascii;
        auto const unit = static_cast<unsigned int>(*p);
        if (unit >= 0x800) return to;
        bool const two = unit >= 0x80;
        to[0] = static_cast<char>(two ? 0xC0 | unit >> 6 : unit);
        to[1] = static_cast<char>(0x80 | (unit & 0x3F));
        to += 1 + static_cast<int>(two);
        ++p;
    }
    return to;
}

#if defined(__SSE2__)
// Encodes four units of three bytes each; false, and nothing done, when there are others. Writes two bytes too many.
bool encodeThrees(wchar_t const* p, char* to) noexcept {
    __m128i units;
    if constexpr (sizeof(wchar_t) == 2)
        units = _mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<__m128i const*>(p)), _mm_setzero_si128());
    else
        units = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
    auto const bits = [](int value) { return _mm_set1_epi32(value); };
    __m128i const inside = _mm_and_si128(_mm_cmpgt_epi32(units, bits(0x7FF)), _mm_cmplt_epi32(units, bits(0x10000)));
    __m128i const surrogates = _mm_cmpeq_epi32(_mm_and_si128(units, bits(0xF800)), bits(0xD800));
    if (_mm_movemask_epi8(_mm_andnot_si128(surrogates, inside)) != 0xFFFF) return false;

    __m128i const first = _mm_srli_epi32(units, 12);
    __m128i const second = _mm_and_si128(_mm_slli_epi32(units, 2), bits(0x3F00));
    __m128i const third = _mm_and_si128(_mm_slli_epi32(units, 16), bits(0x3F0000));
    __m128i const words = _mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, bits(0x8080E0)));
    __m128i const low = _mm_and_si128(words, _mm_set1_epi64x(0xFFFFFF));
    __m128i const high = _mm_srli_epi64(_mm_andnot_si128(_mm_set1_epi64x(0xFFFFFFFF), words), 8);
    __m128i const sixes = _mm_or_si128(low, high);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), sixes);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 6), _mm_unpackhi_epi64(sixes, sixes));
    return true;
}

// Encodes a block whose surrogates are all paired, but for its last code point, without branching on the lengths. False,
// and nothing done, when there are others. May write three bytes too many.
bool encodeBlock(wchar_t const*& p, char*& to) noexcept {
    std::uint64_t leading = 0, trailing = 0;
    __m128i beyond = _mm_setzero_si128();
    for (int i = block / vector - 1; i >= 0; --i) {
        __m128i const kinds = _mm_packs_epi16(loadHeads(p + vector * i), loadHeads(p + vector * i + 8));
        auto const equal = [kinds](char kind) {
            return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(kinds, _mm_set1_epi8(kind))));
        };
        leading = leading << 16 | equal(0xD800 >> 10);
        trailing = trailing << 16 | equal(0xDC00 >> 10);
        beyond = _mm_or_si128(beyond, _mm_cmpgt_epi8(kinds, _mm_set1_epi8(0xFFFF >> 10)));
    }
    if (leading == 0 || leading << 1 != trailing || _mm_movemask_epi8(beyond) != 0) return false;

    // By the number of bytes behind the first: the marks of them all, and the bits that are spread too far when there is
    // none.
    static constexpr std::uint32_t heads[] = {0, 0xC080, 0xE08080, 0xF0808080}, near[] = {0x40, 0, 0, 0};
    std::uint64_t starts = ~trailing;
    char* byte = to;
    unsigned int at = 0;
    while ((starts &= starts - 1) != 0) {
        auto const next = static_cast<unsigned int>(std::countr_zero(starts)), pair = next - at - 1;
        auto const unit = static_cast<std::uint32_t>(p[at]);
        std::uint32_t const combined = (unit << 10) + static_cast<std::uint32_t>(p[at + 1]) - 0x35FDC00;
        std::uint32_t const value = unit ^ ((unit ^ combined) & (0 - pair));  // chosen without a branch
        unsigned int const more =
            static_cast<unsigned int>(unit >= 0x80) + static_cast<unsigned int>(unit >= 0x800) + pair;
        std::uint32_t const halves = (value & 0xFFF) | (value & 0x1FF000) << 4;
        std::uint32_t const spread = (halves & 0x3F003F) | (halves & 0xFC00FC0) << 2;
        std::uint32_t const word = (spread | heads[more] | (value & near[more])) << (24 - 8 * more);
        std::uint32_t const bytes = __builtin_bswap32(word);
        std::memcpy(byte, &bytes, sizeof bytes);
        byte += more + 1;
        at = next;
    }
    p += at;
    to = byte;
    return true;
}
#endif

// Encodes from p on until the text ends or the piece is full, and returns the piece's end. Behind `full` there is room
// for a block's bytes.
char* encode(wchar_t const*& p, wchar_t const* end, char* to, char const* full) noexcept {
    while (end - p > slack && to < full) {
        unsigned int const others = narrowASCII(p, to);
        if (others == 0) {
            p += vector;
            to += vector;
            continue;
        }
        int const ascii = std::countr_zero(others);
        p += ascii;
        to += ascii;
        to = encodeLatin(p, end, to, full);
        while (end - p > slack && to < full && static_cast<unsigned int>(*p) >= 0x800) {
#if defined(__SSE2__)
            if (encodeThrees(p, to)) {
                p += 4;
                to += 12;
                continue;
            }
            if (isSurrogate(static_cast<unsigned int>(*p)) && encodeBlock(p, to)) {
                while (end - p > slack && to < full && encodeBlock(p, to)) {}
                continue;
            }
#endif
            to = encodeOne(p, end, to);
        }
    }
    while (p != end && to < full) to = encodeOne(p, end, to);
    return to;
}

// ---- Whole texts

// Converts from p to end. A short text is built on the stack. A long one is written straight into the string, whose room
// is as much as the text's beginning needed; it is lengthened in small steps, so that what this fills with zeros is still
// in the nearest cache when it is overwritten.
template <typename To, typename From>
std::basic_string<To> converted(From const* p, From const* end,
                                To* (*convert)(From const*&, From const*, To*, To const*)) {
    std::size_t const step = 1024;
    From const* const begin = p;
    To piece[step];
    auto filled = static_cast<std::size_t>(convert(p, end, piece, std::end(piece) - room) - piece);
    std::basic_string<To> result{piece, filled};
    while (p != end) {
        if (result.capacity() - filled < 2 * room) {
            double const each = 1.03 * static_cast<double>(filled) / static_cast<double>(p - begin);
            result.reserve(filled + static_cast<std::size_t>(each * static_cast<double>(end - p)) + 2 * step);
        }
        result.resize(filled + std::min(4 * step, result.capacity() - filled));
        To* const data = result.data();
        filled = static_cast<std::size_t>(convert(p, end, data + filled, data + result.size() - room) - data);
    }
    result.resize(filled);
    if (result.capacity() / 2 > filled && filled > step) result.shrink_to_fit();
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

std::string utf8(std::wstring const& text) { return converted<char>(text.data(), text.data() + text.size(), encode); }

std::wstring utf8(std::string const& text) {
    auto const* const bytes = reinterpret_cast<Byte const*>(text.data());
    return converted<wchar_t>(bytes, bytes + text.size(), decode);
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
    int const available = size - 1;
    if (text.empty() || available == 0) return 0;

    // True when the prefix is in the buffer, false when it has no room there.
    unsigned int written = 0;
    auto const fits = [&](int length) {
        int const bytes = ORN::os::wideToMultibyte(text.data(), length, buffer, available);
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
