/// One conversion of a printf format, read by the rules of the Windows runtime's wide functions.
#pragma once

#include <climits>
#include <cstdint>

namespace ORN::os {

/// The argument that a conversion takes. Several spellings may take the same.
enum class FormatArgument : std::uint8_t {
    bad,   ///< the text is no conversion: unknown, cut off, or %n
    none,  ///< %%
    int8,
    int16,
    int32,
    int64,
    number,  ///< a double, also with the prefixes l and L
    pointer,
    wideCharacter,
    narrowCharacter,
    wideText,
    narrowText,
};

/// %[flags][width][.precision][prefix]type, as the characters of a format give it.
struct FormatConversion {
    static constexpr int absent = -1;
    static constexpr int fromArguments = -2;

    wchar_t const* prefix = nullptr;  ///< where the prefix begins, or the type when there is none
    wchar_t const* end = nullptr;     ///< behind the type
    bool left = false, plus = false, blank = false, alternate = false, zero = false;
    int width = absent, precision = absent;
    wchar_t type = 0;
    FormatArgument argument = FormatArgument::bad;
};

namespace format {

/// A number, an asterisk, or nothing (which leaves `value` alone); false for one that does not fit.
constexpr bool read(wchar_t const*& at, int& value) noexcept {
    if (*at == L'*') {
        value = FormatConversion::fromArguments;
        ++at;
        return true;
    }
    if (*at < L'0' || *at > L'9') return true;
    std::int64_t number = 0;
    for (; *at >= L'0' && *at <= L'9'; ++at) {
        number = number * 10 + (*at - L'0');
        if (number > INT_MAX) return false;
    }
    value = static_cast<int>(number);
    return true;
}

/// The flag that a character stands for; null when it stands for none.
constexpr bool* flagOf(FormatConversion& conversion, wchar_t character) noexcept {
    switch (character) {
        case L'-': return &conversion.left;
        case L'+': return &conversion.plus;
        case L' ': return &conversion.blank;
        case L'#': return &conversion.alternate;
        case L'0': return &conversion.zero;
        default: return nullptr;
    }
}

enum class Prefix : std::uint8_t { none, hh, h, l, w, longDouble, bits32, bits64 };

constexpr Prefix readPrefix(wchar_t const*& at) noexcept {
    switch (*at) {
        case L'h': return *++at == L'h' ? (++at, Prefix::hh) : Prefix::h;
        case L'l': return *++at == L'l' ? (++at, Prefix::bits64) : Prefix::l;
        case L'w': ++at; return Prefix::w;
        case L'L': ++at; return Prefix::longDouble;
        case L'I':
            ++at;
            if (at[0] == L'6' && at[1] == L'4') return at += 2, Prefix::bits64;
            if (at[0] == L'3' && at[1] == L'2') return at += 2, Prefix::bits32;
            return sizeof(void*) == 8 ? Prefix::bits64 : Prefix::bits32;
        case L'z':
        case L't': ++at; return sizeof(void*) == 8 ? Prefix::bits64 : Prefix::bits32;
        case L'j': ++at; return Prefix::bits64;
        default: return Prefix::none;
    }
}

constexpr FormatArgument argumentOf(wchar_t type, Prefix prefix) noexcept {
    using enum FormatArgument;
    switch (type) {
        case L'd':
        case L'i':
        case L'o':
        case L'u':
        case L'x':
        case L'X':
            switch (prefix) {
                case Prefix::hh: return int8;
                case Prefix::h: return int16;
                case Prefix::none:
                case Prefix::l:
                case Prefix::bits32: return int32;
                case Prefix::bits64: return int64;
                default: return bad;
            }
        case L'e':
        case L'E':
        case L'f':
        case L'F':
        case L'g':
        case L'G':
        case L'a':
        case L'A': return prefix == Prefix::none || prefix == Prefix::l || prefix == Prefix::longDouble ? number : bad;
        case L'p': return prefix == Prefix::none ? pointer : bad;
        case L'c':
        case L'C':
        case L's':
        case L'S': {
            bool const character = type == L'c' || type == L'C';
            bool wide = type == L'c' || type == L's';
            if (prefix == Prefix::h)
                wide = false;
            else if (prefix == Prefix::l || prefix == Prefix::w)
                wide = true;
            else if (prefix != Prefix::none)
                return bad;
            if (character) return wide ? wideCharacter : narrowCharacter;
            return wide ? wideText : narrowText;
        }
        default: return bad;
    }
}

}

/// Reads the conversion at a per cent sign. A bad one has no end.
constexpr FormatConversion formatConversion(wchar_t const* percent) noexcept {
    FormatConversion result;
    wchar_t const* at = percent + 1;
    if (*at == L'%') {
        result.prefix = at;
        result.end = at + 1;
        result.type = L'%';
        result.argument = FormatArgument::none;
        return result;
    }
    while (bool* const flag = format::flagOf(result, *at)) {
        *flag = true;
        ++at;
    }
    if (!format::read(at, result.width)) return result;
    if (*at == L'.') {
        ++at;
        result.precision = 0;
        if (!format::read(at, result.precision)) return result;
    }
    result.prefix = at;
    format::Prefix const prefix = format::readPrefix(at);
    result.type = *at;
    result.argument = format::argumentOf(*at, prefix);
    if (result.argument != FormatArgument::bad) result.end = at + 1;
    return result;
}

}
