#include "orn/os/posix/format/Integer.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ORN::os::format {

namespace {

bool isHexadecimal(FormatConversion const& conversion) noexcept {
    return conversion.type == L'x' || conversion.type == L'X' || conversion.argument == FormatArgument::pointer;
}

/// Writes the digits that end at `end`, none for 0, and returns the first. A constant base makes the division cheap.
template <unsigned Base>
wchar_t* writeDigits(wchar_t* end, std::uint64_t magnitude, std::string_view digits = "0123456789ABCDEF") noexcept {
    for (; magnitude != 0; magnitude /= Base) *--end = static_cast<wchar_t>(digits[magnitude % Base]);
    return end;
}

/// Writes what stands before all digits, zeros included: a sign, or 0x.
wchar_t* writeLead(wchar_t* out, FormatConversion const& conversion, bool negative, bool isZero) noexcept {
    bool const isSigned = conversion.type == L'd' || conversion.type == L'i';
    if (negative) {
        *out++ = L'-';
    } else if (isSigned && (conversion.plus || conversion.blank)) {
        *out++ = conversion.plus ? L'+' : L' ';
    } else if (conversion.alternate && isHexadecimal(conversion) && !isZero) {
        *out++ = L'0';
        *out++ = conversion.type == L'x' ? L'x' : L'X';
    }
    return out;
}

}

void putInteger(Sink& sink, FormatConversion const& conversion, std::uint64_t magnitude, bool negative) noexcept {
    bool const octal = conversion.type == L'o', pointer = conversion.argument == FormatArgument::pointer;
    // Windows writes a pointer with all its digits, whatever precision the format gives.
    int const precision = pointer ? static_cast<int>(2 * sizeof(void*)) : conversion.precision;

    // 64 bits have at most 22 octal digits.
    wchar_t digits[24];
    wchar_t* const end = std::end(digits);
    wchar_t* first = octal                        ? writeDigits<8>(end, magnitude)
                     : !isHexadecimal(conversion) ? writeDigits<10>(end, magnitude)
                     : conversion.type == L'x'    ? writeDigits<16>(end, magnitude, "0123456789abcdef")
                                                  : writeDigits<16>(end, magnitude);
    if (magnitude == 0 && precision != 0) *--first = L'0';
    wchar_t lead[2];
    wchar_t const* const leadEnd = writeLead(lead, conversion, negative, magnitude == 0);

    std::ptrdiff_t const count = end - first, leading = leadEnd - lead;
    std::ptrdiff_t zeros = std::max<std::ptrdiff_t>(precision - count, 0);
    // For an octal number # asks for one leading zero, unless there is one already.
    if (conversion.alternate && octal && zeros == 0 && (count == 0 || *first != L'0')) zeros = 1;
    // Zeros that fill the width are digits, behind the sign; a precision turns them off.
    if (conversion.zero && !conversion.left && precision < 0)
        zeros = std::max(zeros, conversion.width - leading - count);
    // The zeros are counted by now, so what is still missing of the width is blank.
    FormatConversion outer = conversion;
    outer.zero = false;
    padded(sink, outer, static_cast<std::size_t>(leading + zeros + count), [&] {
        sink.put(lead, static_cast<std::size_t>(leading));
        sink.fill(L'0', static_cast<std::size_t>(zeros));
        sink.put(first, static_cast<std::size_t>(count));
    });
}

}
