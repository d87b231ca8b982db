#include "orn/os/CodePage.h"

#include "orn/os/Fault.h"
#include "orn/unicode/CodePoints.h"

#include <windows.h>

namespace ORN::os {

namespace {

// A length of -1 would mean a terminated text, and a room of 0 a question for the length.
bool usable(int length, int room) noexcept {
    if (length > 0 && room > 0) return true;
    SetLastError(ERROR_INVALID_PARAMETER);
    return false;
}

}

int multibyteToWide(char const* bytes, int length, wchar_t* units, int room) noexcept {
    if (ORN_OS_REFUSED("MultiByteToWideChar")) return SetLastError(ERROR_INVALID_FLAGS), 0;
    return usable(length, room) ? MultiByteToWideChar(CP_ACP, 0, bytes, length, units, room) : 0;
}

int wideToMultibyte(wchar_t const* units, int length, char* bytes, int room) noexcept {
    if (ORN_OS_REFUSED("WideCharToMultiByte")) return SetLastError(ERROR_INVALID_FLAGS), 0;
    return usable(length, room) ? WideCharToMultiByte(CP_ACP, 0, units, length, bytes, room, nullptr, nullptr) : 0;
}

int wideToMultibyteStrictly(wchar_t const* units, int length, char* bytes, int room, bool& substituted) noexcept {
    substituted = false;
    if (ORN_OS_REFUSED("WideCharToMultiByte")) return SetLastError(ERROR_INVALID_FLAGS), 0;
    if (!usable(length, room)) return 0;

    if (GetACP() == CP_UTF8) {  // takes neither that flag nor the last argument, but can refuse invalid text
        int const strict =
            WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, units, length, bytes, room, nullptr, nullptr);
        if (strict > 0 || GetLastError() != ERROR_NO_UNICODE_TRANSLATION) return strict;
        substituted = true;
        return WideCharToMultiByte(CP_UTF8, 0, units, length, bytes, room, nullptr, nullptr);
    }
    BOOL usedDefault = FALSE;
    // Without the flag a similar character would not count as a substitution, and usedDefault would stay FALSE.
    int const written =
        WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, units, length, bytes, room, nullptr, &usedDefault);
    substituted = usedDefault != FALSE;
    return written;
}

int decodeMultibyte(char const* bytes, int length, unsigned int& codePoint) noexcept {
    // The system does not tell how many bytes a character takes: the shortest head that it takes is one.
    int const longest = 4;  // of all code pages that can be the ANSI one
    for (int size = 1; size <= length && size <= longest; ++size) {
        // A lead byte is no character without its trail byte, whatever the system makes of it.
        if (size == 1 && IsDBCSLeadByte(static_cast<BYTE>(*bytes))) continue;
        // Room for the surrogates of one code point.
        wchar_t units[2];
        int const count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, bytes, size, units, 2);
        if (count == 0) continue;
        wchar_t const* head = units;
        codePoint = unicode::readUnits(head, units + count);
        return codePoint == 0 ? 0 : size;
    }
    return -1;
}

}
