#include "orn/os/posix/format/Text.h"

namespace ORN::os::format {

void putText(Sink& sink, FormatConversion const& conversion, wchar_t const* text) noexcept {
    if (text == nullptr) text = L"(null)";
    // With a precision the text need not be terminated, so nothing behind the limit is read.
    std::size_t const length =
        conversion.precision < 0 ? std::wcslen(text) : wcsnlen(text, static_cast<std::size_t>(conversion.precision));
    padded(sink, conversion, length, [&] { sink.put(text, length); });
}

void putText(Sink& sink, FormatConversion const& conversion, char const* text) noexcept {
    if (text == nullptr) text = "(null)";
    std::size_t const limit = conversion.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(conversion.precision);
    // The padding before the text needs its length, so the text is decoded twice.
    std::size_t length = 0;
    eachUnit(text, limit, [&](wchar_t) { ++length; });
    padded(sink, conversion, length, [&] { eachUnit(text, limit, [&](wchar_t unit) { sink.put(unit); }); });
}

void putCharacter(Sink& sink, FormatConversion const& conversion, wchar_t unit) noexcept {
    padded(sink, conversion, 1, [&] { sink.put(unit); });
}

void putCharacter(Sink& sink, FormatConversion const& conversion, char byte) noexcept {
    char const text[] = {byte, 0};
    wchar_t unit = 0;
    // A zero byte counts as the end of the text, so nothing is handed on for it, and the unit stays zero.
    eachUnit(text, 1, [&](wchar_t only) { unit = only; });
    putCharacter(sink, conversion, unit);
}

}
