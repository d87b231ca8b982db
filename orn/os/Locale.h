/// The locales of the C runtime, and case and collation by the calling thread's current one. Categories (LC_ALL,
/// LC_CTYPE, ...) and names are those of the runtime.
#pragma once

#include <string>

namespace ORN::os {

inline constexpr int perThreadLocale = 1;
inline constexpr int processLocale = 2;

/// With perThreadLocale, gives the calling thread a locale of its own, at first a copy of the current one, which
/// setLocale then changes. With processLocale, drops the thread's own locale, and setLocale changes that of the
/// process. With 0, changes nothing. Returns the mode that was, or -1 when it could not be changed.
int threadLocaleMode(int mode) noexcept;

/// The name of the current locale in a category; empty for an unknown category.
std::string localeName(int category);

/// Sets a category of the current locale. The empty name means the user's default. False, with nothing changed, when
/// there is no such locale or category.
bool setLocale(int category, char const* name) noexcept;

/// Map a terminated text in place, character by character. A character whose counterpart has another length stays.
void upperCase(wchar_t* text) noexcept;
void lowerCase(wchar_t* text) noexcept;

/// Compares two texts: negative, 0 or positive. Sets errno when it fails, and leaves errno alone otherwise.
int collate(wchar_t const* a, wchar_t const* b) noexcept;

}
