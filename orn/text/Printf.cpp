#include "orn/text/Printf.h"

#include "orn/os/Format.h"
#include "orn/os/FormatConversion.h"
#include "orn/text/Encoding.h"

#include <climits>
#include <cwchar>
#include <memory>

namespace os = ORN::os;

namespace {

bool isGood(wchar_t const* format) noexcept {
    while ((format = std::wcschr(format, L'%')) != nullptr) {
        os::FormatConversion const conversion = os::formatConversion(format);
        if (conversion.argument == os::FormatArgument::bad) return false;
        format = conversion.end;
    }
    return true;
}

/// Each attempt uses up an argument list, so it works on a copy.
int attempt(wchar_t* buffer, std::size_t capacity, wchar_t const* format, std::va_list arguments) noexcept {
    std::va_list copy;
    va_copy(copy, arguments);
    int const length = os::formatWide(buffer, capacity, format, copy);
    va_end(copy);
    return length;
}

}

std::wstring vStringPrintf(wchar_t const* format, std::va_list arguments) {
    // The runtimes disagree about bad formats, and some end the program.
    if (!isGood(format)) return format;

    // Nearly every text fits here, and then the result is the only memory that it takes.
    std::size_t capacity = 1024;
    wchar_t scratch[1024];
    int length = attempt(scratch, capacity, format, arguments);
    if (length >= 0) return {scratch, static_cast<std::size_t>(length)};

    // The runtimes do not tell how much room is missing.
    while (length == os::formatTooLong && capacity <= INT_MAX / 2) {
        capacity *= 2;
        std::unique_ptr<wchar_t[]> const buffer{new wchar_t[capacity]};
        length = attempt(buffer.get(), capacity, format, arguments);
        if (length >= 0) return {buffer.get(), static_cast<std::size_t>(length)};
    }
    // No room helps, or it would have to be larger than an int can count.
    return format;
}

std::wstring stringPrintf(wchar_t const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::wstring text = vStringPrintf(format, arguments);
    va_end(arguments);
    return text;
}

std::string vStringPrintf(char const* format, std::va_list arguments) {
    return getMBS(vStringPrintf(getWCS(format).c_str(), arguments));
}

std::string stringPrintf(char const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = vStringPrintf(format, arguments);
    va_end(arguments);
    return text;
}
