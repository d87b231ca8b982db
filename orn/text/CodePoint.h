/// Unicode code points, and the walk over a wide string by code points.
#pragma once

#include "orn/Export.h"
#include "orn/unicode/Surrogates.h"

#include <cstddef>
#include <string>

/// One code point: any 32-bit value as it was given, unpaired surrogates and values above U+10FFFF included.
class ORN_API CodePoint {
public:
    /// What a code point means for lines.
    enum EOLCode {
        eolNone,     ///< no line end
        eolNewline,  ///< U+000A, U+000C, U+0085, U+2028, U+2029
        eolReturn    ///< U+000D
    };

    static constexpr CodePoint codePoint(unsigned int value) noexcept { return CodePoint{value}; }  ///< any value

    constexpr unsigned int value() const noexcept { return value_; }  ///< as given

    /// The UTF-16 form, one or two units, without terminator. Returns the number of units written: 0 when size is too
    /// small for them, or the value is 0x110000 or more.
    [[nodiscard]] std::size_t wchars(wchar_t* buffer, std::size_t size) const noexcept;
    operator std::wstring() const;  ///< the same units; empty from 0x110000 on

    /// The UTF-8 form in the scheme of RFC 2279, one to six bytes, without terminator; surrogates are encoded like any
    /// other value. Returns the number of bytes written: 0 when size is too small for them, or the value is 0x80000000
    /// or more.
    [[nodiscard]] std::size_t utf8(char* buffer, std::size_t size) const noexcept;

    EOLCode eolCode() const noexcept;  ///< the caller joins CR LF

    /// By value.
    /// @{
    friend constexpr bool operator==(CodePoint a, CodePoint b) noexcept { return a.value_ == b.value_; }
    friend constexpr bool operator!=(CodePoint a, CodePoint b) noexcept { return a.value_ != b.value_; }
    /// @}

private:
    explicit constexpr CodePoint(unsigned int value) noexcept : value_{value} {}

    unsigned int value_;
};

/// Walks UTF-16 code units by code points: a leading surrogate and the trailing one behind it are one code point, an
/// unpaired surrogate is itself. The text is not copied and must outlive the walk.
///
///     for (CodePointEnumerator e{text}; e; ++e) use(*e);
class ORN_API CodePointEnumerator {
public:
    /// At the first code point.
    /// @{
    explicit CodePointEnumerator(std::wstring const& text) noexcept : current_{text.begin()}, end_{text.end()} {}
    CodePointEnumerator(std::wstring::const_iterator first, std::wstring::const_iterator end) noexcept
        : current_{first}, end_{end} {}
    /// @}

    explicit CodePointEnumerator(std::wstring const&& text) = delete;  // a temporary text would be gone at once

    /// Non-null while there is a current code point.
    operator void*() const noexcept { return current_ != end_ ? const_cast<CodePointEnumerator*>(this) : nullptr; }

    /// The current code point, and the step to the next one. Both throw std::logic_error at the end.
    /// @{
    CodePoint operator*() const {
        if (current_ == end_) fellOff("Fell off the end of a string in CodePointEnumerator::operator*");
        unsigned int value = static_cast<unsigned int>(*current_);
        if (atPair()) fromUTF16(value, value, static_cast<unsigned int>(current_[1]));
        return CodePoint::codePoint(value);
    }
    CodePointEnumerator& operator++() {
        if (current_ == end_) fellOff("Fell off the end of a string in CodePointEnumerator::operator++");
        current_ += atPair() ? 2 : 1;
        return *this;
    }
    /// @}

private:
    [[noreturn]] static void fellOff(char const* message);

    bool atPair() const noexcept {
        return isSurrogateA(static_cast<unsigned int>(*current_)) && end_ - current_ > 1 &&
               isSurrogateB(static_cast<unsigned int>(current_[1]));
    }

    std::wstring::const_iterator current_, end_;
};
