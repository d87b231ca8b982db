/// Interned texts: each distinct text has one pointer.
#pragma once

#include "orn/Export.h"

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string_view>

/// A quark stands for one text for the life of the process. Quarks of equal texts hold the same pointer, so comparing
/// is cheap. A default quark, nullQuark, stands for no text, which is not the empty text.
struct ORN_API Quark {
    constexpr Quark() noexcept = default;

    /// The quark of a terminated text, which must not be null, or of a view up to its first zero; from any thread.
    /// Throws std::bad_alloc.
    /// @{
    [[nodiscard]] static Quark create(wchar_t const* text);
    [[nodiscard]] static Quark create(std::wstring_view text);
    /// @}

    wchar_t const* value() const;  ///< the text, valid until the library is unloaded; null for nullQuark

    /// Equal texts.
    /// @{
    friend constexpr bool operator==(Quark a, Quark b) noexcept { return a.text_ == b.text_; }
    friend constexpr bool operator!=(Quark a, Quark b) noexcept { return a.text_ != b.text_; }
    /// @}

private:
    friend struct QuarkLess;
    friend struct std::hash<Quark>;
    friend ORN_API std::wostream& operator<<(std::wostream& stream, Quark const& quark);

    constexpr explicit Quark(wchar_t const* text) noexcept : text_{text} {}

    wchar_t const* text_ = nullptr;
};

extern ORN_API Quark const nullQuark;  ///< no text

/// The order of the stored texts' addresses: quick, not alphabetical, and another one in each run.
struct QuarkLess {
    /// True when a comes first.
    bool operator()(Quark const& a, Quark const& b) const noexcept {
        return std::less<wchar_t const*>{}(a.text_, b.text_);
    }
};

/// The order of the texts in the current locale; texts that it holds equal, or cannot compare, go by their code units.
/// So only identical quarks are equivalent. nullQuark is before every text.
struct ORN_API QuarkCollatesLess {
    bool operator()(Quark const& a, Quark const& b) const;  ///< true when a comes first
};

/// "Q:" and the pointer; at a debugging level of 2 or more also a blank and the text, if there is one, in double
/// quotes.
ORN_API std::wostream& operator<<(std::wostream& stream, Quark const& quark);

/// By identity.
template <>
struct std::hash<Quark> {
    /// Another one in each run.
    std::size_t operator()(Quark const& quark) const noexcept { return hash<wchar_t const*>{}(quark.text_); }
};
