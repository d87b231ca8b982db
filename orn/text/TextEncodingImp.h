/// What both readers and writers of text files need to know of encodings.
#pragma once

#include "orn/text/TextEncoding.h"

#include <cstdint>

namespace ORN {

constexpr bool isEncoding(TextEncoding encoding) noexcept {
    int const value = static_cast<int>(encoding);
    return value >= encMultibyte && value <= encUTF16be;
}

/// The encoding that the first bytes of a file name, and the length of the byte order mark there.
struct Signature {
    TextEncoding encoding;
    std::int64_t length;

    static constexpr std::uint64_t longest = 4;

    /// Whether these bytes are the beginning of a mark, and more of them are needed.
    static constexpr bool undecided(unsigned char const* bytes, std::int64_t count) noexcept {
        if (count == 0) return true;
        return count == 1 ? bytes[0] == 0xEF || bytes[0] >= 0xFE : count == 2 && bytes[0] == 0xEF && bytes[1] == 0xBB;
    }

    /// Looks at the first bytes. Without a mark, the encoding is the one given.
    static constexpr Signature of(unsigned char const* bytes, std::int64_t count,
                                  TextEncoding withoutMark = encMultibyte) noexcept {
        if (count >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) return {encUTF8, 3};
        if (count >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) return {encUTF16le, 2};
        if (count >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) return {encUTF16be, 2};
        return {withoutMark, 0};
    }
};

}
