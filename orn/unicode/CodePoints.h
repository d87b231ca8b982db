/// One code point at a time: from and to UTF-16 and UTF-8, and which ones end a line.
#pragma once

#include "orn/unicode/Surrogates.h"

#include <cstddef>

namespace ORN {

/// LF, FF, CR, NEL, LS, PS: the characters that end a line of a text file or a record of comma-separated text.
constexpr bool isLineEnd(unsigned int value) noexcept {
    return value == 0x0A || value == 0x0C || value == 0x0D || value == 0x85 || value == 0x2028 || value == 0x2029;
}

namespace unicode {

inline constexpr unsigned int end = 0x110000;        // behind the greatest code point
inline constexpr unsigned int replacement = 0xFFFD;  // stands for what could not be converted

/// Whether the value is a code point that a text may hold.
constexpr bool isCharacter(unsigned int value) noexcept { return value < end && !isSurrogate(value); }

// ---- UTF-16

constexpr std::size_t unitsOf(unsigned int value) noexcept { return value < 0x10000 ? 1 : 2; }

/// Writes the one or two units of a value below `end`, and returns their end.
template <typename Unit>
constexpr Unit* writeUnits(unsigned int value, Unit* to) noexcept {
    if (value < 0x10000) [[likely]] {
        *to++ = static_cast<Unit>(value);
    } else {
        *to++ = static_cast<Unit>(0xD7C0 + (value >> 10));  // 0xD800, less the 0x10000 >> 10 that the pair leaves out
        *to++ = static_cast<Unit>(0xDC00 | (value & 0x3FF));
    }
    return to;
}

/// Takes a pair, or any single unit as it is, from the head of a text that is not empty.
template <typename Unit>
constexpr unsigned int readUnits(Unit const*& from, Unit const* textEnd) noexcept {
    auto const unit = static_cast<unsigned int>(*from++);
    unsigned int value = unit;
    if (from != textEnd && fromUTF16(value, unit, static_cast<unsigned int>(*from))) ++from;
    return value;
}

// ---- UTF-8

inline constexpr std::size_t longestUtf8 = 6;  // bytes

/// The length in the scheme of RFC 2279, up to six bytes for values below 0x80000000. For those below `end` it is the
/// length of RFC 3629, at most four bytes.
constexpr std::size_t utf8Length(unsigned int value) noexcept {
    return value < 0x80        ? 1
           : value < 0x800     ? 2
           : value < 0x10000   ? 3
           : value < 0x200000  ? 4
           : value < 0x4000000 ? 5
                               : 6;
}

/// Writes the value in so many bytes, which must be its utf8Length, and returns their end.
template <std::size_t length, typename Byte>
constexpr Byte* writeUtf8(unsigned int value, Byte* to) noexcept {
    constexpr unsigned int lead = length == 1 ? 0 : 0xFF00u >> length & 0xFF;
    *to++ = static_cast<Byte>(lead | value >> 6 * (length - 1));
    if constexpr (length > 5) *to++ = static_cast<Byte>(0x80 | (value >> 24 & 0x3F));
    if constexpr (length > 4) *to++ = static_cast<Byte>(0x80 | (value >> 18 & 0x3F));
    if constexpr (length > 3) *to++ = static_cast<Byte>(0x80 | (value >> 12 & 0x3F));
    if constexpr (length > 2) *to++ = static_cast<Byte>(0x80 | (value >> 6 & 0x3F));
    if constexpr (length > 1) *to++ = static_cast<Byte>(0x80 | (value & 0x3F));
    return to;
}

/// Writes a value below 0x80000000, and returns the bytes' end.
template <typename Byte>
constexpr Byte* writeUtf8(unsigned int value, Byte* to) noexcept {
    switch (utf8Length(value)) {
        case 1: return writeUtf8<1>(value, to);
        case 2: return writeUtf8<2>(value, to);
        case 3: return writeUtf8<3>(value, to);
        case 4: return writeUtf8<4>(value, to);
        case 5: return writeUtf8<5>(value, to);
        default: return writeUtf8<6>(value, to);
    }
}

/// How much a reader of UTF-8 takes for a sequence.
enum class Leniency {
    none,     ///< RFC 3629: the shortest forms of all code points but surrogates
    files,    ///< up to four bytes, checked loosely: 80 to BF lead two bytes, and any byte up to C0 may follow
    anyBytes  ///< RFC 2279, unchecked: 80 to BF stand alone, other leads say how many bytes follow, and those may be any
};

/// How many bytes a sequence with this lead has; 0 for no lead.
template <Leniency leniency>
constexpr int sequenceLength(unsigned int lead) noexcept {
    if constexpr (leniency == Leniency::anyBytes)
        return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : lead < 0xFC ? 5 : 6;
    bool const isLead = leniency == Leniency::files ? lead < 0xF8 : lead < 0x80 || (lead >= 0xC2 && lead < 0xF5);
    if (!isLead) return 0;
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Whether a byte may stand at the place `at` (1 is the first behind the lead) of a sequence.
template <Leniency leniency>
constexpr bool mayFollow(unsigned int lead, int at, unsigned int byte) noexcept {
    if constexpr (leniency == Leniency::anyBytes) return true;
    if constexpr (leniency == Leniency::files) return byte <= 0xC0;
    if (at > 1) return byte >= 0x80 && byte <= 0xBF;
    unsigned int const lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;   // nothing that is too long
    unsigned int const highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;  // no surrogate, nothing too large
    return byte >= lowest && byte <= highest;
}

/// Reads the sequence at the head of bytes that are at least one, and returns its length. Where there is none, returns
/// minus the length of the longest head that could have begun one, or of the one byte that could not. A value of lenient
/// readers may be a surrogate or 0x110000 and more.
template <Leniency leniency>
constexpr int readUtf8(unsigned int& value, unsigned char const* bytes, std::ptrdiff_t available) noexcept {
    unsigned int const lead = bytes[0];
    int const length = sequenceLength<leniency>(lead);
    if (length == 0) return -1;
    // Any bytes are added up with the marks of their places taken off, as if each were where it belongs.
    constexpr bool adds = leniency == Leniency::anyBytes;
    unsigned int result = length == 1 ? lead : adds ? lead - (0xFF00u >> length & 0xFF) : lead & (0x7Fu >> length);
    for (int i = 1; i < length; ++i) {
        if (i >= available || !mayFollow<leniency>(lead, i, bytes[i])) return -i;
        result = result * 64 + (adds ? bytes[i] - 0x80u : bytes[i] & 0x3Fu);
    }
    value = result;
    return length;
}

}
}
