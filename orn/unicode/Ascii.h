/// Sixteen ASCII characters at once, from bytes to units and back. Processors without SSE2, and programs compiled with
/// ORN_SCALAR defined, take the plain twin of each function.
#pragma once

#include <cstddef>

#if (defined(__SSE2__) || defined(_M_X64)) && !defined(ORN_SCALAR)
#define ORN_SSE2
#include <emmintrin.h>
#endif

namespace ORN::ascii {

inline constexpr std::ptrdiff_t block = 16;  // characters at once

// Widens a block and returns a bit for each byte that is not ASCII. The units from the first of those on mean nothing.
inline unsigned int widen(unsigned char const* from, wchar_t* to) noexcept {
#if defined(ORN_SSE2)
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
    for (unsigned int i = 0; i < block; ++i) {
        if (from[i] >= 0x80) return 1u << i;
        to[i] = from[i];
    }
    return 0;
#endif
}

#if defined(ORN_SSE2)
// Eight units as signed 16-bit values. Units from 0x8000 on, and elements that are no units, come out negative or above
// 0x7F, never as ASCII.
inline __m128i loadEight(wchar_t const* from) noexcept {
    auto const* const source = reinterpret_cast<__m128i const*>(from);
    if constexpr (sizeof(wchar_t) == 2)
        return _mm_loadu_si128(source);
    else
        return _mm_packs_epi32(_mm_loadu_si128(source), _mm_loadu_si128(source + 1));
}
#endif

// Narrows a block and returns a bit for each unit that is not ASCII. The bytes from the first of those on mean nothing.
template <typename Byte>
unsigned int narrow(wchar_t const* from, Byte* to) noexcept {
    static_assert(sizeof(Byte) == 1);
#if defined(ORN_SSE2)
    __m128i const low = loadEight(from), high = loadEight(from + 8);
    __m128i const bytes = _mm_packus_epi16(low, high);                       // top bit set: above 0x7F
    __m128i const others = _mm_or_si128(bytes, _mm_packs_epi16(low, high));  // or negative
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), bytes);
    return static_cast<unsigned int>(_mm_movemask_epi8(others));
#else
    for (unsigned int i = 0; i < block; ++i) {
        if (static_cast<unsigned int>(from[i]) >= 0x80) return 1u << i;
        to[i] = static_cast<Byte>(from[i]);
    }
    return 0;
#endif
}

// A bit for each byte of a block that is not ASCII.
inline unsigned int findOthers(unsigned char const* from) noexcept {
#if defined(ORN_SSE2)
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<__m128i const*>(from))));
#else
    unsigned int found = 0;
    for (unsigned int i = 0; i < block; ++i) found |= static_cast<unsigned int>(from[i] >> 7) << i;
    return found;
#endif
}

// A bit for each byte of a block that is one of these.
template <typename... Byte>
unsigned int find(unsigned char const* from, Byte... bytes) noexcept {
#if defined(ORN_SSE2)
    __m128i const all = _mm_loadu_si128(reinterpret_cast<__m128i const*>(from));
    __m128i found = _mm_setzero_si128();
    ((found = _mm_or_si128(found, _mm_cmpeq_epi8(all, _mm_set1_epi8(static_cast<char>(bytes))))), ...);
    return static_cast<unsigned int>(_mm_movemask_epi8(found));
#else
    unsigned int found = 0;
    for (unsigned int i = 0; i < ascii::block; ++i)
        found |= static_cast<unsigned int>(((from[i] == static_cast<unsigned char>(bytes)) || ...)) << i;
    return found;
#endif
}

}
