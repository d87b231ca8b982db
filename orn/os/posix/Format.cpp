#include "orn/os/Format.h"

#include "orn/os/Fault.h"
#include "orn/os/posix/format/Double.h"
#include "orn/os/posix/format/Integer.h"
#include "orn/os/posix/format/Text.h"

#include <climits>

// The C library's own wide formatter reads %s as narrow text, cannot say whether room or something else was missing, and
// writes whole code points. So the formatter of this system is written here, by the rules of Windows.

namespace ORN::os {

namespace {

using namespace format;

/// The argument list. Each conversion takes its own from it.
struct Arguments {
    // A va_list may be an array, which a function could not take by reference. Inside a struct it can.
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

/// Writes one conversion with its argument. False when that cannot be formed.
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
        case FormatArgument::number: return putDouble(sink, conversion, va_arg(arguments.list, double));
        case FormatArgument::wideCharacter:
            // An element is one code unit, also where wchar_t has 32 bits.
            putCharacter(sink, conversion, static_cast<wchar_t>(integer() & 0xFFFF));
            break;
        case FormatArgument::narrowCharacter: putCharacter(sink, conversion, static_cast<char>(integer())); break;
        case FormatArgument::wideText: putText(sink, conversion, va_arg(arguments.list, wchar_t const*)); break;
        case FormatArgument::narrowText: putText(sink, conversion, va_arg(arguments.list, char const*)); break;
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
        // A bad conversion has no end, but putConversion refuses it, and that ends the loop.
        // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
        while (*format != 0 && *format != L'%') ++format;
        sink.put(literal, static_cast<std::size_t>(format - literal));
        if (*format == 0) break;
        // What does not fit is formed anew in a larger buffer, so the rest of the format is left alone.
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
