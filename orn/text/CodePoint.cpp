#include "orn/text/CodePoint.h"

#include "orn/unicode/CodePoints.h"

#include <stdexcept>

std::size_t CodePoint::wchars(wchar_t* buffer, std::size_t size) const noexcept {
    if (value_ >= ORN::unicode::end || size < ORN::unicode::unitsOf(value_)) return 0;
    return static_cast<std::size_t>(ORN::unicode::writeUnits(value_, buffer) - buffer);
}

CodePoint::operator std::wstring() const {
    wchar_t units[2];
    return {units, wchars(units, 2)};
}

std::size_t CodePoint::utf8(char* buffer, std::size_t size) const noexcept {
    // The six bytes of the longest form have room for 31 bits.
    if (value_ >= 0x80000000 || size < ORN::unicode::utf8Length(value_)) return 0;
    return static_cast<std::size_t>(ORN::unicode::writeUtf8(value_, buffer) - buffer);
}

CodePoint::EOLCode CodePoint::eolCode() const noexcept {
    return value_ == 0x0D ? eolReturn : ORN::isLineEnd(value_) ? eolNewline : eolNone;
}

void CodePointEnumerator::fellOff(char const* message) { throw std::logic_error{message}; }
