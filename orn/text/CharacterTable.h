/// The general categories of Unicode 5.0 for every code point, as the look-ups of CharacterClass.h read them.
#pragma once

#include "orn/Export.h"

namespace ORN {

/// For every block of 256 code points the page of their category numbers; equal pages are one. The category of a code
/// point below 0x110000 is characterTable[codePoint >> 8][codePoint & 0xFF].
extern ORN_API unsigned char const* const characterTable[0x1100];

}
