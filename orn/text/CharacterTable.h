/// The general categories of Unicode 5.0 for every code point, as the look-ups of CharacterClass.h read them.
#pragma once

#include "orn/Export.h"

namespace ORN {

/// Two levels: a block of 256 code points names its page, a page has a category number for each of them. Equal pages
/// are one.
struct CharacterTable {
    static constexpr unsigned int end = 0x110000;  ///< the first value beyond the table
    static constexpr unsigned int pages = 85;

    constexpr unsigned char operator[](unsigned int codePoint) const noexcept {
        return category[page[codePoint >> 8]][codePoint & 0xFF];
    }

    unsigned char page[end >> 8];
    unsigned char category[pages][256];
};

extern ORN_API CharacterTable const characterTable;

}
