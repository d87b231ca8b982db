/// UTF-8 to UTF-16, piece by piece. The rules are those of decodeOne; all else here is a faster way to the same units for
/// texts of some kind, and leaves to decodeOne what is not of that kind.
#pragma once

#include "orn/text/AsciiImp.h"
#include "orn/text/CodePoint.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace ORN::utf8decode {

using Byte = unsigned char;

inline constexpr std::size_t most = 1;       // units that come of a byte
inline constexpr std::size_t spill = 80;     // units that may be written behind those of a piece's last byte
inline constexpr std::ptrdiff_t slack = 72;  // bytes that must be there for the fast ways
inline constexpr std::ptrdiff_t block = 64;  // bytes whose structure is looked at together

// What the marks of lead and following bytes add up to in the sum, by the number of those that follow.
inline constexpr unsigned int marks[] = {0, 0x3080, 0xE2080, 0x3C82080, 0xFA082080, 0x82082080};

constexpr int following(Byte lead) noexcept {
    return lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : lead < 0xF8 ? 3 : lead < 0xFC ? 4 : 5;
}

// Appends one unit, a pair, or nothing for a value beyond Unicode.
inline wchar_t* appendUnits(unsigned int value, wchar_t* to) noexcept {
    if (value <= 0xFFFF) [[likely]] {
        *to = static_cast<wchar_t>(value);
        return to + 1;
    }
    return to + CodePoint::codePoint(value).wchars(to, 2);
}

// Decodes the sequence at p, with one test for its end: one that lacks its last byte has the text's terminating zero in
// its place, by intention.
inline wchar_t* decodeOne(Byte const*& p, Byte const* end, wchar_t* to) noexcept {
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

// Whether a lead byte's two-byte sequence gives one unit whatever its second byte is.
constexpr bool leadsTwo(Byte lead) noexcept { return lead >= 0xC2 && lead < 0xE0; }

// Decodes ASCII and two-byte sequences, as Latin letters make them, up to a byte that begins neither: at each step at most
// sixteen ASCII bytes, and the sequence behind them if they are fewer. Which of both it is must not be a branch, and the
// way to the next step must not lead through the sequence.
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
        to[plain] = static_cast<wchar_t>(lead[0] * 64u + lead[1] - marks[1]);
        p = lead + 2 * two;
        to += plain + two;
    }
    from = p;
    return to;
}

#if defined(ORN_SSE2)
// The bytes of a sequence of up to four without their marks, the last one uppermost.
inline std::uint32_t payload(Byte const* p, int length) noexcept {
    static constexpr std::uint32_t own[] = {0, 0, 0x80C00000, 0x8080E000, 0x808080F0};
    std::uint32_t const bytes = p[0] | static_cast<std::uint32_t>(p[1]) << 8 | static_cast<std::uint32_t>(p[2]) << 16 |
                                static_cast<std::uint32_t>(p[3]) << 24;
    return (bytes << (32 - 8 * length)) - own[length];
}

// Appends the units of four payloads. May write a unit too many.
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

// Decodes a block of well-formed sequences of any lengths, four at a time, without branching on the lengths. False, and
// nothing done, when there are others, or code points from U+100000 on. The block's last few are left.
inline bool decodeBlock(Byte const*& p, wchar_t*& to) noexcept {
    std::uint64_t const leads = atLeast(0xC0, p), threes = atLeast(0xE0, p), fours = atLeast(0xF0, p);
    std::uint64_t const continuations = atLeast(0x80, p) & ~leads;
    if (atLeast(0xF4, p) != 0 || (leads << 1 | threes << 2 | fours << 3) != continuations) return false;

    std::uint64_t starts[5] = {~continuations};  // of all sequences, of those behind the first, the second, ...
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
                unsigned int const value = p[0] * 4096u + p[1] * 64u + p[2] - marks[2];
                p += 3;
                to = appendUnits(value, to);
            } else if (*p < 0xF0 || !decodeBlock(p, to)) {
                to = decodeOne(p, end, to);
            }
        }
    }
    while (p < stop) to = decodeOne(p, end, to);
    return to;
}

}
