/// What readers and writers of text files both ask about encodings.
#pragma once

#include "orn/text/TextEncoding.h"

#include <cstdint>

namespace ORN {

/// The encoding that a file's first bytes tell, and how many of them are its byte order mark.
struct Signature {
    TextEncoding encoding;
    std::int64_t length;

    static constexpr std::uint64_t longest = 4;

    static constexpr Signature of(unsigned char const* bytes, std::int64_t count) noexcept {
        if (count >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) return {encUTF8, 3};
        if (count >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) return {encUTF16le, 2};
        if (count >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) return {encUTF16be, 2};
        return {encMultibyte, 0};
    }
};

}
