/// What a program or a reader refuses, and what it says of it: rows of a checked-in text.
#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

struct Refusal {
    std::string given, said;
};

/// Lines behind "< " are given, and the line behind the next "> " is said of them. A bar stands for a line end, \xHH for a
/// byte, and a backslash at the end of a given line takes its line end away. All other lines are comments.
inline std::vector<Refusal> refusals(std::string const& file) {
    std::ifstream text{file, std::ios::binary};
    std::vector<Refusal> all;
    std::string given;
    for (std::string line; std::getline(text, line);) {
        std::string bytes;
        for (std::size_t i = 2; i < line.size(); ++i) {
            bool const isByte = line.compare(i, 2, "\\x") == 0;
            char const byte = isByte ? static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16)) : line[i];
            bytes += byte == '|' ? '\n' : byte;
            if (isByte) i += 3;
        }
        if (line.starts_with("<")) given += bytes.ends_with('\\') ? bytes.substr(0, bytes.size() - 1) : bytes + '\n';
        if (line.starts_with(">")) all.push_back({std::exchange(given, {}), bytes});
    }
    if (all.empty()) throw std::runtime_error{file + " holds no refusals"};
    return all;
}
