/// What a process finds around it: its environment variables, and the time of day.
#pragma once

#include "orn/os/Types.h"

#include <cstdint>
#include <string>

namespace ORN::os {

/// The value of a variable; empty when there is none. Off Windows names and values are in the multibyte code page, and a
/// program that runs with another user's rights (set-uid) has no variables.
std::wstring environmentVariable(std::wstring const& name);

/// Replaces each %NAME% by the variable's value. Where there is no such variable, the name stays with its signs. Returns
/// how many units the result has with its terminator, and writes it if that is at most `size`. Returns 0 when it fails.
DWORD expandEnvironment(wchar_t const* text, wchar_t* buffer, DWORD size) noexcept;

/// The seconds since 1970 began in Greenwich.
std::int64_t secondsSince1970() noexcept;

/// Such a time as the C runtime's ctime writes it in the user's time zone, line feed included. Empty for a time that the
/// runtime cannot write. Any thread may call.
std::string localTimeText(std::int64_t seconds);

}
