#include "orn/text/CodePoint.h"

#include <stdexcept>

std::size_t CodePoint::wchars(wchar_t* buffer, std::size_t size) const noexcept {
    if (value_ < 0x10000) {
        if (size < 1) return 0;
        buffer[0] = static_cast<wchar_t>(value_);
        return 1;
    }
    if (value_ >= 0x110000 || size < 2) return 0;
    buffer[0] = static_cast<wchar_t>(0xD800 | (value_ - 0x10000) >> 10);
    buffer[1] = static_cast<wchar_t>(0xDC00 | (value_ & 0x3FF));
    return 2;
}

CodePoint::operator std::wstring() const {
    wchar_t units[2];
    return {units, wchars(units, 2)};
}

std::size_t CodePoint::utf8(char* buffer, std::size_t size) const noexcept {
    if (value_ < 0x80) {
        if (size < 1) return 0;
        buffer[0] = static_cast<char>(value_);
        return 1;
    }
    std::size_t const length = value_ < 0x800       ? 2
                               : value_ < 0x10000   ? 3
                               : value_ < 0x200000  ? 4
                               : value_ < 0x4000000 ? 5
                                                    : 6;
    if (value_ >= 0x80000000 || size < length) return 0;

    unsigned int rest = value_;
    for (std::size_t i = length - 1; i > 0; --i, rest >>= 6) buffer[i] = static_cast<char>(0x80 | (rest & 0x3F));
    buffer[0] = static_cast<char>((0xFF00 >> length & 0xFF) | rest);
    return length;
}

CodePoint::EOLCode CodePoint::eolCode() const noexcept {
    switch (value_) {
        case 0x000A:
        case 0x000C:
        case 0x0085:
        case 0x2028:
        case 0x2029: return eolNewline;
        case 0x000D: return eolReturn;
        default: return eolNone;
    }
}

void CodePointEnumerator::fellOff(char const* message) { throw std::logic_error{message}; }
