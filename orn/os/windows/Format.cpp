#include "orn/os/Format.h"

#include "orn/os/Fault.h"
#include "orn/os/FormatConversion.h"
#include "orn/os/windows/LocaleFormat.h"

#include <cstdio>
#include <cwchar>
#include <memory>
#include <new>

namespace ORN::os {

namespace {

/// A format as the runtime spells it, which knows neither z, t, j nor %F.
class Spelled {
public:
    explicit Spelled(wchar_t const* format) noexcept : text_{format} {
        if (!needed(format)) return;
        std::size_t const bound = std::wcslen(format) * 3 + 1;  // "%zu" becomes "%I64u"
        wchar_t* out = scratch_;
        // Most formats are short; a failure to get memory is the caller's to report.
        if (bound > sizeof scratch_ / sizeof *scratch_) {
            heap_.reset(out = new (std::nothrow) wchar_t[bound]);
            if (out == nullptr) {
                text_ = nullptr;
                return;
            }
        }
        text_ = out;
        while (*format != 0) {
            if (*format != L'%') {
                *out++ = *format++;
                continue;
            }
            // Every conversion has an end, because formatWide() takes good formats only. Flags, width and precision
            // mean the same in both spellings.
            FormatConversion const conversion = formatConversion(format);
            while (format != conversion.prefix) *out++ = *format++;
            if (conversion.argument == FormatArgument::int64) {
                for (wchar_t const unit : {L'I', L'6', L'4'}) *out++ = unit;
                *out++ = conversion.type;
            } else if (conversion.argument == FormatArgument::number) {
                // The argument is a double with any prefix, so none is written.
                *out++ = conversion.type == L'F' ? L'f' : conversion.type;
            } else {
                while (format != conversion.end) *out++ = *format++;
            }
            format = conversion.end;
        }
        *out = 0;
    }

    wchar_t const* get() const noexcept { return text_; }  ///< null when there was no memory

private:
    static bool needed(wchar_t const* format) noexcept {
        while ((format = std::wcschr(format, L'%')) != nullptr) {
            FormatConversion const conversion = formatConversion(format);
            if (conversion.argument == FormatArgument::int64 && *conversion.prefix != L'I') return true;
            if (conversion.argument == FormatArgument::number &&
                (conversion.type == L'F' || conversion.prefix[0] != conversion.type))
                return true;
            format = conversion.end;
        }
        return false;
    }

    wchar_t const* text_;
    std::unique_ptr<wchar_t[]> heap_;
    wchar_t scratch_[256];
};

}

int formatWide(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept {
    if (ORN_OS_REFUSED("_vsnwprintf")) return formatFailed;
    Spelled const spelled{format};
    if (spelled.get() == nullptr) return formatFailed;

    std::va_list again;  // formatUnits uses up the other one
    va_copy(again, arguments);
    int length = formatUnits(buffer, size, spelled.get(), arguments);
    // The runtime answers lack of room and an argument that it cannot convert with the same -1.
    if (length < 0) length = countUnits(spelled.get(), again) >= 0 ? formatTooLong : formatFailed;
    va_end(again);
    return length;
}

}
