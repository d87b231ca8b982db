/// What the system calls the calling thread. On Windows only a debugger learns the name.
#pragma once

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

inline std::optional<std::string> nameOfThisThread() {
    std::ifstream file{"/proc/thread-self/comm"};
    std::string name;
    if (std::filesystem::path::preferred_separator == L'\\' || !std::getline(file, name)) return std::nullopt;
    return name;
}
