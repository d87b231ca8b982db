/// UTF-16 to UTF-8, piece by piece. The rules are those of encodeOne. Everything else is a faster way to the same bytes for
/// texts of one kind, and leaves the rest to encodeOne.
#pragma once

#include "orn/unicode/Ascii.h"
#include "orn/unicode/CodePoints.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ORN::utf8encode {

inline constexpr std::size_t most = unicode::longestUtf8;  // bytes: an element of 32 bits may hold more than a unit
inline constexpr std::size_t spill = 32;     // bytes that may be written behind those of a piece's last unit
inline constexpr std::ptrdiff_t slack = 24;  // units that must be left for the fast ways

// Encodes the code point at p. An element that is no code unit, from 0x80000000 on, leaves nothing.
inline char* encodeOne(wchar_t const*& p, wchar_t const* end, char* to) noexcept {
    unsigned int const value = unicode::readUnits(p, end);
    return value < 0x80000000 ? unicode::writeUtf8(value, to) : to;
}

#if defined(ORN_SSE2)
// Four units as 32-bit values.
inline __m128i loadFour(wchar_t const* from) noexcept {
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    if constexpr (sizeof(wchar_t) == 2)
        return _mm_unpacklo_epi16(_mm_loadl_epi64(source), _mm_setzero_si128());
    else
        return _mm_loadu_si128(source);
}
#endif

// Encodes units below 0x800 (Latin letters with accents), up to one that is not. Each step takes at most sixteen ASCII units,
// and the one behind them if they are fewer, without a branch between the two cases.
inline char* encodeLatin(wchar_t const*& from, wchar_t const* stop, char* to) noexcept {
    wchar_t const* p = from;
    while (p < stop) {
        unsigned int const others = ascii::narrow(p, to);
        int const plain = std::countr_zero(others | 1u << ascii::block), two = static_cast<int>(others != 0);
        p += plain;
        to += plain;
        auto const unit = static_cast<unsigned int>(*p);
        if ((two & static_cast<int>(unit >= 0x800)) != 0) break;
        to[0] = static_cast<char>(0xC0 | unit >> 6);
        to[1] = static_cast<char>(0x80 | (unit & 0x3F));
        p += two;
        to += 2 * two;
    }
    from = p;
    return to;
}

#if defined(ORN_SSE2)
// Encodes four units without a branch for what they are. The leading unit of a surrogate pair becomes three bytes and the
// trailing one the fourth, so that a pair may lie across two calls: a trailing unit at p belongs to the unit before it.
// Returns false, and does nothing, when a surrogate among the four, or behind them, is unpaired.
inline bool encodeFour(wchar_t const* p, char*& to) noexcept {
    auto const every = [](int bits) { return _mm_set1_epi32(bits); };
    auto const choose = [](__m128i mask, __m128i a, __m128i b) {
        return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
    };
    auto const isHalf = [every](__m128i units, int half) {
        return _mm_cmpeq_epi32(_mm_and_si128(units, every(~0x3FF)), every(half));
    };
    __m128i const units = loadFour(p), next = loadFour(p + 1);
    __m128i const leading = isHalf(units, 0xD800), trailing = isHalf(units, 0xDC00);
    __m128i const unpaired = _mm_xor_si128(leading, isHalf(next, 0xDC00)), noUnits = _mm_srli_epi32(units, 16);
    __m128i const fine = _mm_cmpeq_epi32(_mm_or_si128(unpaired, noUnits), _mm_setzero_si128());
    if (_mm_movemask_epi8(fine) != 0xFFFF) return false;

    // The first three bytes of a pair have the form of a three-byte sequence for a value of 17 bits: 0x10000, and the
    // code point without its last six bits.
    __m128i const head = _mm_add_epi32(_mm_add_epi32(_mm_slli_epi32(units, 4), every(0x10400 - 0xD8000)),
                                       _mm_and_si128(_mm_srli_epi32(next, 6), every(0xF)));
    __m128i const values = choose(leading, head, units);
    __m128i const sixth = _mm_and_si128(values, every(0x3F)), twelfth = _mm_and_si128(values, every(0xFC0));
    __m128i const one = choose(trailing, _mm_or_si128(sixth, every(0x80)), values);
    __m128i const two = _mm_or_si128(_mm_or_si128(_mm_srli_epi32(values, 6), _mm_slli_epi32(sixth, 8)), every(0x80C0));
    __m128i const three = _mm_or_si128(_mm_or_si128(_mm_srli_epi32(values, 12), _mm_slli_epi32(twelfth, 2)),
                                       _mm_or_si128(_mm_slli_epi32(sixth, 16), every(0x8080E0)));
    __m128i const aboveOne = _mm_andnot_si128(trailing, _mm_cmpgt_epi32(values, every(0x7F)));
    __m128i const aboveTwo = _mm_andnot_si128(trailing, _mm_cmpgt_epi32(values, every(0x7FF)));

    std::uint32_t bytes[4];
    std::int32_t more[4];  // minus how many bytes beyond one
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), choose(aboveOne, choose(aboveTwo, three, two), one));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(more), _mm_add_epi32(aboveOne, aboveTwo));
    for (int i = 0; i < 4; ++i) {
        std::memcpy(to, bytes + i, 4);
        to += 1 - more[i];
    }
    return true;
}

// Encodes by fours from the beginning of a code point as far as encodeFour goes; false when it does nothing.
inline bool encodeFours(wchar_t const*& from, wchar_t const* stop, char*& to) noexcept {
    wchar_t const* p = from;
    if (isSurrogateB(static_cast<unsigned int>(*p))) return false;
    while (p < stop && encodeFour(p, to)) p += 4;
    if (p == from) return false;
    auto const unit = static_cast<unsigned int>(*p);
    if (isSurrogateB(unit)) {
        *to++ = static_cast<char>(0x80 | (unit & 0x3F));
        ++p;
    }
    from = p;
    return true;
}
#else
inline bool encodeFours(wchar_t const*&, wchar_t const*, char*&) noexcept { return false; }
#endif

// Encodes the code points that begin in [p, stop) of a text up to `end`, moves p behind them, and returns the bytes' end.
inline char* encode(wchar_t const*& p, wchar_t const* stop, wchar_t const* end, char* to) noexcept {
    wchar_t const* const fast = end - p > slack ? std::min(stop, end - slack) : p;
    while (p < fast) {
        if (ascii::narrow(p, to) == 0) {
            p += ascii::block;
            to += ascii::block;
            continue;
        }
        to = encodeLatin(p, fast, to);
        while (p < fast && static_cast<unsigned int>(*p) >= 0x800)
            if (!encodeFours(p, fast, to)) to = encodeOne(p, end, to);
    }
    while (p < stop) to = encodeOne(p, end, to);
    return to;
}

}
