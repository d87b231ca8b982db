/// Where a formatted text goes: a buffer of the caller's, whose end is no error.
#pragma once

#include "orn/os/Format.h"
#include "orn/os/FormatConversion.h"

#include <climits>
#include <cstddef>
#include <cwchar>

namespace ORN::os::format {

/// The units written so far. It drops what does not fit, and remembers that.
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

}
