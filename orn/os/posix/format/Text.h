/// Texts and characters in a format, wide ones and narrow ones.
#pragma once

#include "orn/os/CodePage.h"
#include "orn/os/posix/format/Sink.h"
#include "orn/unicode/CodePoints.h"

#include <climits>

namespace ORN::os::format {

/// @{
void putText(Sink& sink, FormatConversion const& conversion, wchar_t const* text) noexcept;
void putText(Sink& sink, FormatConversion const& conversion, char const* text) noexcept;
void putCharacter(Sink& sink, FormatConversion const& conversion, wchar_t unit) noexcept;
void putCharacter(Sink& sink, FormatConversion const& conversion, char byte) noexcept;
/// @}

/// Hands on up to `limit` units of a terminated narrow text in the multibyte code page. It reads no byte behind the
/// last of them, and never cuts a pair. A byte that begins no character is U+FFFD.
template <typename Put>
void eachUnit(char const* text, std::size_t limit, Put put) {
    while (limit > 0 && *text != 0) {
        unsigned int point = static_cast<unsigned char>(*text);
        int taken = point < 0x80 ? 1 : -1;
        for (int length = 1; taken < 0 && length <= MB_LEN_MAX && text[length - 1] != 0; ++length)
            taken = decodeMultibyte(text, length, point);
        if (taken < 1) {
            point = unicode::replacement;
            taken = 1;
        }
        text += taken;
        wchar_t units[2];
        wchar_t const* const end = unicode::writeUnits(point, units);
        auto const count = static_cast<std::size_t>(end - units);
        if (limit < count) return;
        for (wchar_t const* unit = units; unit != end; ++unit) put(*unit);
        limit -= count;
    }
}

}
