#include "orn/text/Printf.h"

#include <cwchar>

// A first form, so that the errors can be built on it.
std::wstring vStringPrintf(wchar_t const* format, std::va_list arguments) {
    wchar_t buffer[1024];
    int const length = std::vswprintf(buffer, 1024, format, arguments);
    return length < 0 ? std::wstring{format} : std::wstring(buffer, static_cast<std::size_t>(length));
}

std::wstring stringPrintf(wchar_t const* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::wstring text = vStringPrintf(format, arguments);
    va_end(arguments);
    return text;
}
