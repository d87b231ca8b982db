/// Classification of code points by the general categories of Unicode 5.0.
#pragma once

#include "orn/text/CharacterTable.h"
#include "orn/text/CodePoint.h"

/// The number of the code point's category:
///
///      0 unassigned (Cn), and 0x110000 and above
///      1 uppercase (Lu)         2 lowercase (Ll)        3 titlecase (Lt) letter
///      4 non-spacing (Mn)       5 spacing (Mc)          6 enclosing (Me) combining sign
///      7 decimal digit (Nd)     8 letter number (Nl)    9 other number (No)
///     10 space (Zs)            11 line (Zl)            12 paragraph (Zp) separator
///     13 control (Cc)          14 format (Cf)          15 surrogate (Cs)
///     16 private use (Co)      18 modifier (Lm)        19 other (Lo) letter
///     20 connector (Pc)        21 dash (Pd)            22 open (Ps)
///     23 close (Pe)            24 initial quote (Pi)   25 final quote (Pf)
///     26 other (Po) punctuation
///     27 math (Sm)             28 currency (Sc)        29 modifier (Sk)         30 other (So) symbol
inline unsigned char unicodeClass(CodePoint c) noexcept {
    // Without a branch: what is beyond Unicode is looked up in a block of unassigned code points.
    unsigned int const block = c.value() >> 8, unassigned = 0x300;
    return ORN::characterTable[block < 0x1100 ? block : unassigned][c.value() & 0xFF];
}

namespace ORN {

/// A set of category numbers, a bit each.
class CategorySet {
public:
    /// The categories from first to last, both included.
    static constexpr CategorySet range(unsigned int first, unsigned int last) noexcept {
        return CategorySet{(2u << last) - (1u << first)};
    }
    /// The categories of both sets.
    constexpr CategorySet operator|(CategorySet other) const noexcept { return CategorySet{bits_ | other.bits_}; }
    /// Whether the category, at most 31, is in the set.
    constexpr bool contains(unsigned char category) const noexcept { return (bits_ >> category & 1) != 0; }

private:
    explicit constexpr CategorySet(unsigned int bits) noexcept : bits_{bits} {}

    unsigned int bits_;
};

namespace categories {

/// The numbers of unicodeClass by kind.
/// @{
inline constexpr CategorySet letters = CategorySet::range(1, 3) | CategorySet::range(18, 19);
inline constexpr CategorySet combiningSigns = CategorySet::range(4, 6);
inline constexpr CategorySet numbers = CategorySet::range(7, 9);
inline constexpr CategorySet separators = CategorySet::range(10, 12);
inline constexpr CategorySet punctuation = CategorySet::range(20, 26);
inline constexpr CategorySet symbols = CategorySet::range(27, 30);
inline constexpr CategorySet graphic = letters | combiningSigns | numbers | punctuation | symbols;
/// @}

}

}

/// Letters of every kind, any number, and both.
/// @{
inline bool isUalpha(CodePoint c) noexcept { return ORN::categories::letters.contains(unicodeClass(c)); }
inline bool isUdigit(CodePoint c) noexcept { return ORN::categories::numbers.contains(unicodeClass(c)); }
inline bool isUalnum(CodePoint c) noexcept {
    return (ORN::categories::letters | ORN::categories::numbers).contains(unicodeClass(c));
}
/// @}

/// Letters, combining signs, numbers, punctuation and symbols.
inline bool isUgraph(CodePoint c) noexcept { return ORN::categories::graphic.contains(unicodeClass(c)); }

/// No symbols.
inline bool isUpunct(CodePoint c) noexcept { return ORN::categories::punctuation.contains(unicodeClass(c)); }

/// Separators (also those of lines and paragraphs), U+0009 to U+000D, and U+FEFF.
inline bool isUspace(CodePoint c) noexcept {
    return c.value() - 0x09 <= 0x0D - 0x09 || c.value() == 0xFEFF ||
           ORN::categories::separators.contains(unicodeClass(c));
}

/// Graphic characters, separators, and U+FEFF.
inline bool isUprint(CodePoint c) noexcept {
    return c.value() == 0xFEFF || (ORN::categories::graphic | ORN::categories::separators).contains(unicodeClass(c));
}

/// Up to U+007F.
inline bool isUascii(CodePoint c) noexcept { return c.value() <= 0x7F; }
