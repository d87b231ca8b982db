/// Files that a test has to give back.
#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <system_error>

/// How many this process has open; 0 on Windows, where those that Wine shows come and go by themselves.
inline std::ptrdiff_t openFiles() {
    if constexpr (std::filesystem::path::preferred_separator == L'\\') return 0;
    std::error_code none;
    return std::distance(std::filesystem::directory_iterator{"/proc/self/fd", none}, {});
}
