/// From the bytes of a text file to code points: a decoder for each encoding, which knows nothing of lines but the
/// characters that end them.
///
/// decodeOne decodes the character at the head of the bytes and returns how many of them it takes, or 0 when they are not
/// a whole valid character. A value may still be none that a text holds (isCharacter). decodeRun moves `from` and `to` on
/// over characters that decodeOne would decode and that end no line, as far as it can go quickly: at most one unit a byte.
/// It may write up to ascii::block units behind those.
#pragma once

#include "orn/os/CodePage.h"
#include "orn/unicode/Ascii.h"
#include "orn/unicode/CodePoints.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace ORN::decoding {

using Byte = unsigned char;

/// Widens a block; the bits returned tell which of its bytes are not ASCII, or end a line.
inline unsigned int widenBlock(Byte const* from, wchar_t* to) noexcept {
    unsigned int const ends = ascii::find(from, 0x0A, 0x0C, 0x0D);  // before a write to `to` could change the bytes
    return ends | ascii::widen(from, to);
}

class Utf8Decoder {
public:
    static std::size_t decodeOne(unsigned int& value, Byte const* bytes, std::size_t available) noexcept {
        if (available == 0) return 0;
        int const length =
            unicode::readUtf8<unicode::Leniency::files>(value, bytes, static_cast<std::ptrdiff_t>(available));
        return length < 0 ? 0 : static_cast<std::size_t>(length);
    }

    static void decodeRun(wchar_t*& to, Byte const*& from, Byte const* end) noexcept {
        wchar_t* out = to;  // locals, which a write through `out` cannot change
        Byte const* p = from;
        while (end - p >= ascii::block) {
            // E3 to EC lead no surrogates, no line ends and nothing small.
            if (*p - 0xE3u <= 0xECu - 0xE3u && isTail(p[1]) && isTail(p[2])) {
                *out++ = static_cast<wchar_t>(three(p));
                p += 3;
                continue;
            }
            if (*p < 0x80) {
                unsigned int const stops = widenBlock(p, out);
                std::ptrdiff_t const taken = stops == 0 ? ascii::block : std::countr_zero(stops);
                out += taken;
                p += taken;
                if (stops == 0) continue;
                if (*p < 0x80 || end - p < 3) break;
            }
            if (isTwo(p) && end - p >= latinRoom) {
                to = out;
                from = p;
                decodeLatin(to, from);
                out = to;
                p = from;
                if (*p < 0x80 && isLineEnd(*p)) break;
                continue;
            }
            // Steps of a constant length, so that one character does not wait for another's length.
            if (*p < 0xE0) {
                int const invalid = !isTail(p[1]);
                if (invalid | (two(p) < 0x86)) break;
                *out++ = static_cast<wchar_t>(two(p));
                p += 2;
            } else if (*p < 0xF0) {
                unsigned int const value = three(p);
                int const noTail = !isTail(p[1]);
                int const invalid = noTail | !isTail(p[2]) | isSurrogate(value);
                if (invalid | (value < 0x86) | ((value & ~1u) == 0x2028)) break;
                *out++ = static_cast<wchar_t>(value);
                p += 3;
            } else {
                break;
            }
        }
        to = out;
        from = p;
    }

private:
    static constexpr int latinBlock = 64, latinRoom = latinBlock + ascii::block + 2;

    // Decodes ASCII and characters of two bytes in a block, up to a line end or another character. Finds all stops at once,
    // so that the way to the next stop does not lead through the character before it.
    [[gnu::noinline]] static void decodeLatin(wchar_t*& to, Byte const*& from) noexcept {
        std::uint64_t stops = 0;
        for (int i = latinBlock - ascii::block; i >= 0; i -= ascii::block)
            stops = stops << ascii::block | ascii::findOthers(from + i) | ascii::find(from + i, 0x0A, 0x0C, 0x0D);
        wchar_t* out = to;
        Byte const *p = from, *const blockEnd = from + latinBlock;
        while (stops != 0) {
            int const at = std::countr_zero(stops);
            Byte const* const stop = from + at;
            widenRun(out, p, stop);
            if (!isTwo(stop)) break;
            *out++ = static_cast<wchar_t>(two(stop));
            p = stop + 2;
            stops &= ~(std::uint64_t{3} << at);
        }
        if (stops == 0 && p < blockEnd) widenRun(out, p, blockEnd);
        to = out;
        from = p;
    }

    // Widens ASCII up to `stop`, and up to a block behind it.
    static void widenRun(wchar_t*& to, Byte const*& from, Byte const* stop) noexcept {
        ascii::widen(from, to);
        for (std::ptrdiff_t done = ascii::block; done < stop - from; done += ascii::block)
            ascii::widen(from + done, to + done);
        to += stop - from;
        from = stop;
    }

    // Two bytes that are a character which ends no line. C2 leads NEL, too.
    static bool isTwo(Byte const* p) noexcept { return (p[0] - 0xC3u < 0xE0u - 0xC3u) & isTail(p[1]); }

    static bool isTail(Byte byte) noexcept { return unicode::mayFollow<unicode::Leniency::files>(0, 1, byte); }
    static unsigned int two(Byte const* p) noexcept { return (p[0] & 0x1Fu) << 6 | (p[1] & 0x3Fu); }
    static unsigned int three(Byte const* p) noexcept {
        return (p[0] & 0x0Fu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu);
    }
};

/// A unit's low byte stands at one of its two places, its high byte at the other.
template <std::size_t low, std::size_t high>
class Utf16Decoder {
public:
    static std::size_t decodeOne(unsigned int& value, Byte const* bytes, std::size_t available) noexcept {
        if (available < 2) return 0;
        unsigned int const unit = unitAt(bytes);
        if (!isSurrogate(unit)) {
            value = unit;
            return 2;
        }
        return available >= 4 && fromUTF16(value, unit, unitAt(bytes + 2)) ? 4 : 0;
    }

    static void decodeRun(wchar_t*& to, Byte const*& from, Byte const* end) noexcept {
        for (; end - from >= 2; from += 2) {
            unsigned int const unit = unitAt(from);
            if (isSurrogate(unit) || isLineEnd(unit)) return;
            *to++ = static_cast<wchar_t>(unit);
        }
    }

private:
    static unsigned int unitAt(Byte const* bytes) noexcept {
        return bytes[low] | static_cast<unsigned int>(bytes[high]) << 8;
    }
};
using Utf16leDecoder = Utf16Decoder<0, 1>;
using Utf16beDecoder = Utf16Decoder<1, 0>;

/// The multibyte code page, by the seam.
class MultibyteDecoder {
public:
    MultibyteDecoder() noexcept {
        for (Byte byte = 0; byte < 0x80 && hasAscii_; ++byte) {
            unsigned int value = 0;
            hasAscii_ = decodeOne(value, &byte, 1) == 1 && value == byte;
        }
    }

    static std::size_t decodeOne(unsigned int& value, Byte const* bytes, std::size_t available) noexcept {
        if (available == 0) return 0;
        int const taken = os::decodeMultibyte(reinterpret_cast<char const*>(bytes), static_cast<int>(available), value);
        if (taken == 0) value = 0;  // the seam answers 0 for a zero byte
        return taken < 0 ? 0 : taken == 0 ? 1 : static_cast<std::size_t>(taken);
    }

    void decodeRun(wchar_t*& to, Byte const*& from, Byte const* end) const noexcept {
        while (hasAscii_ && end - from >= ascii::block) {
            unsigned int const stops = widenBlock(from, to);
            std::ptrdiff_t const taken = stops == 0 ? ascii::block : std::countr_zero(stops);
            to += taken;
            from += taken;
            if (stops != 0) return;
        }
    }

private:
    bool hasAscii_ = true;  // every byte below 0x80 is that character
};

}
