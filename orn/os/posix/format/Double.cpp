#include "orn/os/posix/format/Double.h"

#include "orn/os/Scratch.h"
#include "orn/os/posix/format/Text.h"

#include <langinfo.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace ORN::os::format {

namespace {

/// The form that the standard library's conversion has for a type; none for %a.
std::chars_format formOf(wchar_t type) noexcept {
    switch (type) {
        case L'e':
        case L'E': return std::chars_format::scientific;
        case L'f':
        case L'F': return std::chars_format::fixed;
        case L'g':
        case L'G': return std::chars_format::general;
        default: return {};
    }
}

/// Hands on the units of a number as the conversion's type and the thread's locale write it.
template <typename Put>
void eachDigit(std::string_view digits, bool upper, char const* point, Put put) {
    for (char const digit : digits)
        if (digit == '.')
            eachUnit(point, SIZE_MAX, put);
        else
            put(upper && digit == 'e' ? L'E' : static_cast<wchar_t>(digit));
}

/// By the standard library's conversion, which is several times faster than the C library's and gives the same digits.
/// False when it has no form for the conversion, or no room.
bool putQuickly(Sink& sink, FormatConversion const& conversion, double value) noexcept {
    std::chars_format const form = formOf(conversion.type);
    // # asks for a point, and for %g also for zeros, that to_chars leaves out.
    if (form == std::chars_format{} || conversion.alternate || !std::isfinite(value)) return false;
    // The largest double has 309 digits before the point. What does not fit goes the slow way.
    char room[512];
    int const precision = conversion.precision < 0 ? 6 : conversion.precision;
    auto const [end, error] = std::to_chars(room, room + sizeof room, std::fabs(value), form, precision);
    if (error != std::errc{}) return false;

    std::string_view const digits{room, static_cast<std::size_t>(end - room)};
    bool const upper = conversion.type < L'a';
    char const* const point = nl_langinfo(RADIXCHAR);
    std::size_t length = digits.size();
    if (std::string_view{point} != ".") {
        length = 0;
        eachDigit(digits, upper, point, [&](wchar_t) { ++length; });
    }

    // The number is formed without its sign, because zeros may stand between the sign and the digits.
    wchar_t const sign = std::signbit(value) ? L'-' : conversion.plus ? L'+' : conversion.blank ? L' ' : wchar_t{};
    bool const zeros = conversion.zero && !conversion.left;
    FormatConversion outer = conversion;
    if (sign != 0 && zeros) {  // the zeros stand behind it
        sink.put(sign);
        --outer.width;
    }
    bool const signInside = sign != 0 && !zeros;
    padded(sink, outer, length + (signInside ? 1 : 0), [&] {
        if (signInside) sink.put(sign);
        eachDigit(digits, upper, point, [&](wchar_t unit) { sink.put(unit); });
    });
    return true;
}

/// The conversion as the C library spells it, with width and precision as arguments.
void spell(char* out, FormatConversion const& conversion) noexcept {
    *out++ = '%';
    if (conversion.left) *out++ = '-';
    if (conversion.plus) *out++ = '+';
    if (conversion.blank) *out++ = ' ';
    if (conversion.alternate) *out++ = '#';
    if (conversion.zero) *out++ = '0';
    for (char const unit : std::string_view{"*.*"}) *out++ = unit;
    *out++ = static_cast<char>(conversion.type);
    *out = 0;
}

}

bool putDouble(Sink& sink, FormatConversion const& conversion, double value) noexcept {
    if (putQuickly(sink, conversion, value)) return true;

    // A per cent sign, five flags, *.*, the type and a zero.
    char spelling[12];
    spell(spelling, conversion);
    int const width = conversion.width > 0 ? conversion.width : 0;
    Scratch<char, 512> text;
    auto const print = [&] {
        // A negative precision counts as none, so `absent` goes in as it is.
        return std::snprintf(text.data(), text.size(), spelling, width, conversion.precision, value);
    };
    int const length = print();
    if (length < 0) return false;
    if (static_cast<std::size_t>(length) >= text.size()) {
        if (!text.tryReserve(static_cast<std::size_t>(length) + 1)) return false;
        print();
    }
    eachUnit(text.data(), SIZE_MAX, [&](wchar_t unit) { sink.put(unit); });
    return true;
}

}
