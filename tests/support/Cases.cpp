#include "tests/support/Cases.h"

#include <fstream>
#include <regex>
#include <stdexcept>

namespace {

std::wstring column(std::string const& text) {
    std::wstring result;
    static std::regex const part{"<([0-9A-F]*)>|."};
    for (std::sregex_iterator p{text.begin(), text.end(), part}, end; p != end; ++p)
        if (!(*p)[1].matched)
            result += static_cast<unsigned char>(*(*p)[0].first);
        else if ((*p)[1].length() > 0)
            result += static_cast<wchar_t>(std::stoul((*p)[1], nullptr, 16));
    return result;
}

}

std::vector<std::vector<std::wstring>> Cases::rows(std::string const& table, std::size_t columns) const {
    std::ifstream stream{std::string{ORN_PROJECT "/"} + file_};
    std::vector<std::vector<std::wstring>> rows;
    std::regex const apart{"  +"};
    bool inTable = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == '[') {
            inTable = line == '[' + table + ']';
            continue;
        }
        if (!inTable) continue;
        auto& row = rows.emplace_back();
        for (std::sregex_token_iterator p{line.begin(), line.end(), apart, -1}, end; p != end; ++p)
            row.push_back(column(*p));
        if (row.size() != columns) throw std::runtime_error{file_ + (": other columns in " + line)};
    }
    if (rows.empty()) throw std::runtime_error{file_ + (": no cases of " + table)};
    return rows;
}
