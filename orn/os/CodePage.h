/// Conversions between UTF-16 and the system's multibyte code page: the ANSI code page on Windows, elsewhere the
/// character set of the environment's locale as it was at the first call (the "C" locale counts as UTF-8).
///
/// Every function may be called from any thread. The first three return how many bytes or units they wrote, and 0 after
/// a failure. They then set the thread's last error: 87 for a length or a room of 0, 122 for lack of room, or another
/// code of the system.
#pragma once

namespace ORN::os {

/// Bytes that have no meaning in the code page become U+FFFD, or another character that the system puts there.
int multibyteToWide(char const* bytes, int length, wchar_t* units, int room) noexcept;

/// Characters that the code page lacks become a similar one or '?', as the system decides. When the code page is UTF-8,
/// an unpaired surrogate becomes U+FFFD.
int wideToMultibyte(wchar_t const* units, int length, char* bytes, int room) noexcept;

/// The same, but never takes a similar character. Tells whether it had to replace any.
int wideToMultibyteStrictly(wchar_t const* units, int length, char* bytes, int room, bool& substituted) noexcept;

/// Reads the character at the head of the bytes, from a fresh conversion state. Returns how many bytes it takes, 0 for
/// U+0000 (which takes one), -1 when there is no whole and valid character. The code point is not a surrogate.
int decodeMultibyte(char const* bytes, int length, unsigned int& codePoint) noexcept;

}
