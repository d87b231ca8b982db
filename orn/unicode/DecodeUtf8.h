/// UTF-8 to UTF-16, piece by piece. The rules are those of decodeOne. Everything else is a faster way to the same units for
/// texts of one kind, and leaves the rest to decodeOne.
#pragma once

#include "orn/unicode/Ascii.h"
#include "orn/unicode/CodePoints.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace ORN::utf8decode {

using Byte = unsigned char;

inline constexpr std::size_t most = 1;       // units that a byte becomes
inline constexpr std::size_t spill = 80;     // units that may be written behind those of a piece's last byte
inline constexpr std::ptrdiff_t slack = 72;  // bytes that must be left for the fast ways
inline constexpr std::ptrdiff_t block = 64;  // bytes whose structure is found at once

// What the marks of lead and following bytes add up to in a sequence of two bytes, and of three.
inline constexpr unsigned int marksOfTwo = 0x3080, marksOfThree = 0xE2080;

// Appends the units of a value; nothing for one above U+10FFFF.
inline wchar_t* append(unsigned int value, wchar_t* to) noexcept {
    return value < unicode::end ? unicode::writeUnits(value, to) : to;
}

// Decodes the sequence at p. The text's terminating zero counts as its last byte, on purpose: a sequence that
// lacks one byte takes the zero for it, and one that lacks more becomes U+FFFD.
inline wchar_t* decodeOne(Byte const*& p, Byte const* end, wchar_t* to) noexcept {
    unsigned int value = 0;
    int const length = unicode::readUtf8<unicode::Leniency::anyBytes>(value, p, end - p + 1);
    p = length < 0 || length > end - p ? end : p + length;
    if (length < 0) value = unicode::replacement;
    return append(value, to);
}

// Whether a sequence of two bytes with this lead gives one unit, whatever its second byte is.
constexpr bool leadsTwo(Byte lead) noexcept { return lead >= 0xC2 && lead < 0xE0; }

// Decodes ASCII and sequences of two bytes (Latin letters with accents), up to a byte that begins neither. Each step takes
// at most sixteen ASCII bytes, and the sequence behind them if they are fewer. There is no branch between the two cases,
// because a processor would guess it wrongly in every other word, and the next step does not wait for the sequence's value.
inline wchar_t* decodeLatin(Byte const*& from, Byte const* stop, wchar_t* to) noexcept {
    Byte const* p = from;
    while (p < stop) {
        unsigned int const others = ascii::widen(p, to);
        int const plain = std::countr_zero(others | 1u << ascii::block), two = static_cast<int>(others != 0);
        Byte const* const lead = p + plain;
        if ((lead[0] - 0xC2u) * static_cast<unsigned int>(two) >= 0xE0 - 0xC2) {  // two && !leadsTwo(*lead)
            from = lead;
            return to + plain;
        }
        to[plain] = static_cast<wchar_t>(lead[0] * 64u + lead[1] - marksOfTwo);
        p = lead + 2 * two;
        to += plain + two;
    }
    from = p;
    return to;
}

#if defined(ORN_SSE2)
// The bytes of a sequence of at most four, each without its mark, the last one uppermost.
inline std::uint32_t payload(Byte const* p, int length) noexcept {
    static constexpr std::uint32_t own[] = {0, 0, 0x80C00000, 0x8080E000, 0x808080F0};
    std::uint32_t const bytes = p[0] | static_cast<std::uint32_t>(p[1]) << 8 | static_cast<std::uint32_t>(p[2]) << 16 |
                                static_cast<std::uint32_t>(p[3]) << 24;
    return (bytes << (32 - 8 * length)) - own[length];
}

// Appends the units of four payloads, and may write one unit behind them. Each payload holds four digits to the base 64. Two
// multiply-and-add steps make them a value: digits to pairs (times 64), pairs to the value (times 4096).
inline wchar_t* appendFour(std::uint32_t const (&payloads)[4], wchar_t* to) noexcept {
    auto const every = [](int bits) { return _mm_set1_epi32(bits); };
    __m128i const sixes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(payloads));
    __m128i const twelves =
        _mm_add_epi16(_mm_slli_epi16(_mm_and_si128(sixes, every(0xFF00FF)), 6), _mm_srli_epi16(sixes, 8));
    __m128i const values = _mm_madd_epi16(twelves, every(1 << 16 | 1 << 12));

    __m128i const pairs = _mm_cmpgt_epi32(values, every(0xFFFF));
    __m128i const leading = _mm_add_epi32(_mm_srli_epi32(values, 10), every(0xD7C0));
    std::uint32_t first[4], second[4];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(first),
                     _mm_or_si128(_mm_and_si128(pairs, leading), _mm_andnot_si128(pairs, values)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(second),
                     _mm_or_si128(_mm_and_si128(values, every(0x3FF)), every(0xDC00)));
    int const arePairs = _mm_movemask_ps(_mm_castsi128_ps(pairs));
    for (int i = 0; i < 4; ++i) {
        to[0] = static_cast<wchar_t>(first[i]);
        to[1] = static_cast<wchar_t>(second[i]);
        to += 1 + (arePairs >> i & 1);
    }
    return to;
}

// A bit for each byte of the block that is at least `limit`.
inline std::uint64_t atLeast(int limit, Byte const* p) noexcept {
    __m128i const limits = _mm_set1_epi8(static_cast<char>(limit));
    std::uint64_t bits = 0;
    for (std::ptrdiff_t i = block - ascii::block; i >= 0; i -= ascii::block) {
        __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p + i));
        __m128i const found = _mm_cmpeq_epi8(_mm_max_epu8(bytes, limits), bytes);
        bits = bits << ascii::block | static_cast<unsigned int>(_mm_movemask_epi8(found));
    }
    return bits;
}

// Decodes a block of well-formed sequences of any lengths, four at a time, without a branch for the lengths, and leaves the
// last few. Returns false, and does nothing, when the block holds other sequences, or code points from U+100000 on.
inline bool decodeBlock(Byte const*& p, wchar_t*& to) noexcept {
    std::uint64_t const leads = atLeast(0xC0, p), threes = atLeast(0xE0, p), fours = atLeast(0xF0, p);
    std::uint64_t const continuations = atLeast(0x80, p) & ~leads;
    if (atLeast(0xF4, p) != 0 || (leads << 1 | threes << 2 | fours << 3) != continuations) return false;

    std::uint64_t starts[5] = {
        ~continuations};  // the places of all sequences, of all but the first, but the first two, ...
    for (;;) {
        for (int i = 0; i < 4; ++i) starts[i + 1] = starts[i] & (starts[i] - 1);
        if (starts[4] == 0) break;
        std::uint32_t payloads[4];
        for (int i = 0; i < 4; ++i) {
            int const at = std::countr_zero(starts[i]), next = std::countr_zero(starts[i + 1]);
            payloads[i] = payload(p + at, next - at);
        }
        to = appendFour(payloads, to);
        starts[0] = starts[4];
    }
    p += std::countr_zero(starts[0]);
    return true;
}
#else
inline bool decodeBlock(Byte const*&, wchar_t*&) noexcept { return false; }
#endif

// Decodes the sequences that begin in [p, stop) of a text up to `end`, moves p behind them, and returns the units' end.
inline wchar_t* decode(Byte const*& p, Byte const* stop, Byte const* end, wchar_t* to) noexcept {
    Byte const* const fast = end - p > slack ? std::min(stop, end - slack) : p;
    while (p < fast) {
        if (ascii::widen(p, to) == 0) {
            p += ascii::block;
            to += ascii::block;
            continue;
        }
        to = decodeLatin(p, fast, to);
        while (p < fast && *p >= 0x80 && !leadsTwo(*p)) {
            if (*p >= 0xE0 && *p < 0xF0) {
                unsigned int const value = p[0] * 4096u + p[1] * 64u + p[2] - marksOfThree;
                p += 3;
                to = append(value, to);
            } else if (*p < 0xF0 || !decodeBlock(p, to)) {
                to = decodeOne(p, end, to);
            }
        }
    }
    while (p < stop) to = decodeOne(p, end, to);
    return to;
}

}
