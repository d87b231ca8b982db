/// The runtime's wide formatter in the calling thread's locale.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace ORN::os {

/// As the runtime's _vsnwprintf and _vscwprintf; the argument list is used up.
/// @{
int formatUnits(wchar_t* buffer, std::size_t size, wchar_t const* format, std::va_list arguments) noexcept;
int countUnits(wchar_t const* format, std::va_list arguments) noexcept;
/// @}

}
