/// What readers and writers of text files both ask about encodings.
#pragma once

#include "orn/text/TextEncoding.h"

#include <cstdint>

namespace ORN {

constexpr bool isEncoding(TextEncoding encoding) noexcept {
    int const value = static_cast<int>(encoding);
    return value >= encMultibyte && value <= encUTF16be;
}

/// The encoding that a file's first bytes tell, and how many of them are its byte order mark.
struct Signature {
    TextEncoding encoding;
    std::int64_t length;

    static constexpr std::uint64_t longest = 4;

    /// Whether more bytes behind these few could make a mark of what is none yet.
    static constexpr bool undecided(unsigned char const* bytes, std::int64_t count) noexcept {
        if (count == 0) return true;
        return count == 1 ? bytes[0] == 0xEF || bytes[0] >= 0xFE : count == 2 && bytes[0] == 0xEF && bytes[1] == 0xBB;
    }

    /// Without a mark, the encoding is the one given.
    static constexpr Signature of(unsigned char const* bytes, std::int64_t count,
                                  TextEncoding withoutMark = encMultibyte) noexcept {
        if (count >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) return {encUTF8, 3};
        if (count >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) return {encUTF16le, 2};
        if (count >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) return {encUTF16be, 2};
        return {withoutMark, 0};
    }
};

}
