/// The runtime's locales, and what it maps and compares by the calling thread's current one.
///
/// Categories are the runtime's own (LC_ALL, LC_CTYPE, ...), names what it calls its locales.
#pragma once

#include <string>

namespace ORN::os {

inline constexpr int perThreadLocale = 1;
inline constexpr int processLocale = 2;

/// Lets setLocale change the calling thread's locale alone (perThreadLocale, beginning with what is current) or that of
/// the process (processLocale, which drops the thread's own); 0 asks. Returns the mode so far, -1 when it stays.
int threadLocaleMode(int mode) noexcept;

/// The name of the current locale in a category; empty for an unknown category.
std::string localeName(int category);

/// Sets a category of the current locale, by the empty name to the user's default. False, with nothing changed, when
/// there is no such locale or category.
bool setLocale(int category, char const* name) noexcept;

/// Map a terminated text in place, unit by unit or pair by pair; what has no counterpart of the same length stays.
void upperCase(wchar_t* text) noexcept;
void lowerCase(wchar_t* text) noexcept;

/// Negative, zero or positive; sets errno when it fails, and otherwise leaves it alone.
int collate(wchar_t const* a, wchar_t const* b) noexcept;

}
