#include "orn/os/Format.h"

#include "orn/os/CodePage.h"
#include "orn/os/Fault.h"
#include "orn/os/FormatConversion.h"
#include "orn/unicode/CodePoints.h"

#include <langinfo.h>

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>

// The C library's own wide formatter reads %s as narrow text, cannot say whether room or something else was missing,
// and writes whole code points; so this is one by the Windows rules, and only the digits of doubles are a library's.

namespace ORN::os {

namespace {

/// The units written so far; what does not fit is dropped and remembered.
class Sink {
public:
    Sink(wchar_t* buffer, std::size_t size) noexcept : begin_{buffer}, at_{buffer}, end_{buffer + size} {}

    void put(wchar_t unit) noexcept {
        if (at_ != end_)
            *at_++ = unit;
        else
            full_ = true;
    }
    void fill(wchar_t unit, std::size_t count) noexcept {
        std::size_t const fitting = fit(count);
        std::wmemset(at_, unit, fitting);
        at_ += fitting;
    }
    void put(wchar_t const* text, std::size_t count) noexcept {
        std::size_t const fitting = fit(count);
        std::wmemcpy(at_, text, fitting);
        at_ += fitting;
    }

    int length() const noexcept {
        std::size_t const count = static_cast<std::size_t>(at_ - begin_);
        return count > INT_MAX ? formatFailed : full_ ? formatTooLong : static_cast<int>(count);
    }
    bool full() const noexcept { return full_; }
    void terminate() noexcept {
        if (at_ != end_) *at_ = 0;
    }

private:
    std::size_t fit(std::size_t count) noexcept {
        std::size_t const room = static_cast<std::size_t>(end_ - at_);
        if (count <= room) return count;
        full_ = true;
        return room;
    }

    wchar_t* begin_;
    wchar_t* at_;
    wchar_t* end_;
    bool full_ = false;
};

/// Writes `length` units between the padding that the width asks for.
template <typename Write>
void padded(Sink& sink, FormatConversion const& conversion, std::size_t length, Write write) {
    std::size_t const width = conversion.width > 0 ? static_cast<std::size_t>(conversion.width) : 0;
    std::size_t const padding = width > length ? width - length : 0;
    if (!conversion.left) sink.fill(conversion.zero ? L'0' : L' ', padding);
    write();
    if (conversion.left) sink.fill(L' ', padding);
}

void putText(Sink& sink, FormatConversion const& conversion, wchar_t const* text) noexcept {
    if (text == nullptr) text = L"(null)";
    std::size_t const length =
        conversion.precision < 0 ? std::wcslen(text) : wcsnlen(text, static_cast<std::size_t>(conversion.precision));
    padded(sink, conversion, length, [&] { sink.put(text, length); });
}

/// Up to `limit` units of a terminated narrow text in the multibyte code page, reading no byte behind the last of them.
template <typename Put>
void eachUnit(char const* text, std::size_t limit, Put put) {
    while (limit > 0 && *text != 0) {
        unsigned int point = static_cast<unsigned char>(*text);
        int taken = point < 0x80 ? 1 : -1;
        for (int length = 1; taken < 0 && length <= MB_LEN_MAX && text[length - 1] != 0; ++length)
            taken = decodeMultibyte(text, length, point);
        if (taken < 1) {
            point = 0xFFFD;
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

void putNarrow(Sink& sink, FormatConversion const& conversion, char const* text) noexcept {
    if (text == nullptr) text = "(null)";
    std::size_t const limit = conversion.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(conversion.precision);
    std::size_t length = 0;
    eachUnit(text, limit, [&](wchar_t) { ++length; });
    padded(sink, conversion, length, [&] { eachUnit(text, limit, [&](wchar_t unit) { sink.put(unit); }); });
}

void putCharacter(Sink& sink, FormatConversion const& conversion, wchar_t unit) noexcept {
    padded(sink, conversion, 1, [&] { sink.put(unit); });
}

void putInteger(Sink& sink, FormatConversion const& conversion, std::uint64_t magnitude, bool negative) noexcept {
    bool const pointer = conversion.argument == FormatArgument::pointer;
    bool const isSigned = conversion.type == L'd' || conversion.type == L'i';
    bool const hexadecimal = conversion.type == L'x' || conversion.type == L'X' || pointer;
    unsigned const base = hexadecimal ? 16 : conversion.type == L'o' ? 8 : 10;
    char const* const digitsOf = conversion.type == L'x' ? "0123456789abcdef" : "0123456789ABCDEF";
    int const precision = pointer ? static_cast<int>(2 * sizeof(void*)) : conversion.precision;

    wchar_t digits[24];
    wchar_t* const digitsEnd = digits + sizeof digits / sizeof *digits;
    wchar_t* first = digitsEnd;
    bool const zero = magnitude == 0;
    if (base == 10)
        for (; magnitude != 0; magnitude /= 10) *--first = static_cast<wchar_t>(L'0' + magnitude % 10);
    else
        for (; magnitude != 0; magnitude /= base) *--first = static_cast<wchar_t>(digitsOf[magnitude % base]);
    if (zero && precision != 0) *--first = L'0';
    std::size_t const digitCount = static_cast<std::size_t>(digitsEnd - first);

    wchar_t lead[2];
    std::size_t leadCount = 0;
    if (negative)
        lead[leadCount++] = L'-';
    else if (isSigned && conversion.plus)
        lead[leadCount++] = L'+';
    else if (isSigned && conversion.blank)
        lead[leadCount++] = L' ';
    else if (conversion.alternate && hexadecimal && !zero) {
        lead[leadCount++] = L'0';
        lead[leadCount++] = conversion.type == L'x' ? L'x' : L'X';
    }

    std::size_t zeros = precision > 0 && static_cast<std::size_t>(precision) > digitCount
                            ? static_cast<std::size_t>(precision) - digitCount
                            : 0;
    if (conversion.alternate && base == 8 && zeros == 0 && (digitCount == 0 || *first != L'0')) zeros = 1;
    FormatConversion outer = conversion;
    outer.zero = false;
    if (conversion.zero && !conversion.left && precision < 0) {
        std::size_t const width = conversion.width > 0 ? static_cast<std::size_t>(conversion.width) : 0;
        if (width > leadCount + zeros + digitCount) zeros = width - leadCount - digitCount;
    }
    padded(sink, outer, leadCount + zeros + digitCount, [&] {
        sink.put(lead, leadCount);
        sink.fill(L'0', zeros);
        sink.put(first, digitCount);
    });
}

/// The digits of a finite double without its sign, by the standard library's conversion, which is several times faster
/// than the C library's; false when that has no form for the conversion or no room.
bool putDigits(Sink& sink, FormatConversion const& conversion, double value) noexcept {
    bool const upper = conversion.type < L'a';
    auto const form = [&] {
        switch (conversion.type) {
            case L'e':
            case L'E': return std::chars_format::scientific;
            case L'f':
            case L'F': return std::chars_format::fixed;
            case L'g':
            case L'G': return std::chars_format::general;
            default: return std::chars_format{};
        }
    }();
    if (form == std::chars_format{} || conversion.alternate || !std::isfinite(value)) return false;

    char digits[512];
    int const precision = conversion.precision < 0 ? 6 : conversion.precision;
    auto const written = std::to_chars(digits, digits + sizeof digits, std::fabs(value), form, precision);
    if (written.ec != std::errc{}) return false;
    char const* const end = written.ptr;

    wchar_t const sign = std::signbit(value) ? L'-' : conversion.plus ? L'+' : conversion.blank ? L' ' : wchar_t{};
    char const* const point = nl_langinfo(RADIXCHAR);
    bool const plainPoint = point[0] == '.';
    std::size_t length = sign != 0 ? 1 : 0;
    auto const each = [&](auto put) {
        for (char const* at = digits; at != end; ++at)
            if (*at == '.' && !plainPoint)
                eachUnit(point, SIZE_MAX, put);
            else
                put(upper && *at == 'e' ? L'E' : static_cast<wchar_t>(*at));
    };
    if (plainPoint)
        length += static_cast<std::size_t>(end - digits);
    else
        each([&](wchar_t) { ++length; });

    FormatConversion outer = conversion;
    bool const zeros = conversion.zero && !conversion.left;
    if (zeros) {
        if (sign != 0) sink.put(sign);
        outer.width -= sign != 0 ? 1 : 0;
        length -= sign != 0 ? 1 : 0;
    }
    padded(sink, outer, length, [&] {
        if (sign != 0 && !zeros) sink.put(sign);
        each([&](wchar_t unit) { sink.put(unit); });
    });
    return true;
}

/// A double; false when there was no memory for a very long one.
bool putNumber(Sink& sink, FormatConversion const& conversion, double value) noexcept {
    if (putDigits(sink, conversion, value)) return true;

    char spelling[12];
    char* out = spelling;
    *out++ = '%';
    if (conversion.left) *out++ = '-';
    if (conversion.plus) *out++ = '+';
    if (conversion.blank) *out++ = ' ';
    if (conversion.alternate) *out++ = '#';
    if (conversion.zero) *out++ = '0';
    for (char const unit : std::string_view{"*.*"}) *out++ = unit;
    *out++ = static_cast<char>(conversion.type);
    *out = 0;

    char scratch[512];
    char* text = scratch;
    std::unique_ptr<char[]> heap;
    int const width = conversion.width > 0 ? conversion.width : 0;
    int length = std::snprintf(scratch, sizeof scratch, spelling, width, conversion.precision, value);
    if (length < 0) return false;
    if (static_cast<std::size_t>(length) >= sizeof scratch) {
        std::size_t const size = static_cast<std::size_t>(length) + 1;
        heap.reset(text = new (std::nothrow) char[size]);
        if (text == nullptr) return false;
        length = std::snprintf(text, size, spelling, width, conversion.precision, value);
    }
    eachUnit(text, SIZE_MAX, [&](wchar_t unit) { sink.put(unit); });
    return true;
}

/// The arguments, which every conversion takes its own from.
struct Arguments {
    std::va_list list;
};

/// Takes width and precision from the arguments where the format says so; false for a width that has no size.
bool takeSizes(FormatConversion& conversion, Arguments& arguments) noexcept {
    if (conversion.width == FormatConversion::fromArguments) {
        conversion.width = va_arg(arguments.list, int);
        if (conversion.width < 0) {
            if (conversion.width == INT_MIN) return false;
            conversion.left = true;
            conversion.width = -conversion.width;
        }
    }
    if (conversion.precision == FormatConversion::fromArguments) {
        int const precision = va_arg(arguments.list, int);
        conversion.precision = precision < 0 ? FormatConversion::absent : precision;
    }
    return true;
}

/// An integer in the width of its type.
template <typename Signed>
void putInteger(Sink& sink, FormatConversion const& conversion, Signed value) noexcept {
    bool const negative = (conversion.type == L'd' || conversion.type == L'i') && value < 0;
    std::uint64_t const magnitude = negative ? 0 - static_cast<std::uint64_t>(static_cast<std::int64_t>(value))
                                             : static_cast<std::make_unsigned_t<Signed>>(value);
    putInteger(sink, conversion, magnitude, negative);
}

/// False when it cannot be formed.
bool putConversion(Sink& sink, FormatConversion const& conversion, Arguments& arguments) noexcept {
    auto const integer = [&] { return va_arg(arguments.list, int); };
    switch (conversion.argument) {
        case FormatArgument::bad: return false;
        case FormatArgument::none: sink.put(L'%'); break;
        case FormatArgument::int8: putInteger(sink, conversion, static_cast<std::int8_t>(integer())); break;
        case FormatArgument::int16: putInteger(sink, conversion, static_cast<std::int16_t>(integer())); break;
        case FormatArgument::int32: putInteger(sink, conversion, integer()); break;
        case FormatArgument::int64: putInteger(sink, conversion, va_arg(arguments.list, std::int64_t)); break;
        case FormatArgument::pointer:
            putInteger(sink, conversion, reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, void*)), false);
            break;
        case FormatArgument::number: return putNumber(sink, conversion, va_arg(arguments.list, double));
        case FormatArgument::wideCharacter:
            putCharacter(sink, conversion, static_cast<wchar_t>(integer() & 0xFFFF));
            break;
        case FormatArgument::narrowCharacter: {
            char const text[] = {static_cast<char>(integer()), 0};
            wchar_t unit = 0;
            eachUnit(text, 1, [&](wchar_t only) { unit = only; });
            putCharacter(sink, conversion, unit);
            break;
        }
        case FormatArgument::wideText: putText(sink, conversion, va_arg(arguments.list, wchar_t const*)); break;
        case FormatArgument::narrowText: putNarrow(sink, conversion, va_arg(arguments.list, char const*)); break;
    }
    return true;
}

}

int formatWide(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept {
    if (ORN_OS_REFUSED("_vsnwprintf")) return formatFailed;
    Sink sink{buffer, size};
    Arguments own;
    va_copy(own.list, arguments);
    int result = 0;
    while (result == 0) {
        wchar_t const* const literal = format;
        while (*format != 0 && *format != L'%') ++format;
        sink.put(literal, static_cast<std::size_t>(format - literal));
        if (*format == 0) break;
        if (sink.full()) {
            result = formatTooLong;
            break;
        }
        FormatConversion conversion = formatConversion(format);
        format = conversion.end;
        if (!takeSizes(conversion, own) || !putConversion(sink, conversion, own)) result = formatFailed;
    }
    va_end(own.list);
    if (result != 0) return result;
    sink.terminate();
    return sink.length();
}

}
