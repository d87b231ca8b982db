#include "tests/support/Cases.h"

#include <fstream>
#include <stdexcept>

namespace {

std::wstring column(std::string const& text) {
    std::wstring result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t const end = text[i] == '<' ? text.find_first_not_of("0123456789ABCDEF", i + 1) : std::string::npos;
        if (end == std::string::npos || text[end] != '>') {
            result += static_cast<unsigned char>(text[i]);
            continue;
        }
        if (end > i + 1) result += static_cast<wchar_t>(std::stoul(text.substr(i + 1, end - i - 1), nullptr, 16));
        i = end;
    }
    return result;
}

}

std::vector<std::vector<std::wstring>> Cases::rows(std::string const& table, std::size_t columns) const {
    std::ifstream stream{std::string{ORN_PROJECT "/"} + file_};
    std::vector<std::vector<std::wstring>> rows;
    bool inTable = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == '[' && line.find("  ") == line.npos) {
            inTable = line == '[' + table + ']';
            continue;
        }
        if (!inTable) continue;
        auto& row = rows.emplace_back();
        for (std::size_t i = 0; i < line.size(); i = line.find_first_not_of(' ', i)) {
            std::size_t const end = std::min(line.find("  ", i), line.size());
            row.push_back(column(line.substr(i, end - i)));
            i = end;
        }
        if (row.size() != columns) throw std::runtime_error{file_ + (": other columns in " + line)};
    }
    if (rows.empty()) throw std::runtime_error{file_ + (": no cases of " + table)};
    return rows;
}
