/// Cases that stand in a text beside the test, for paths, addresses and numbers that are hard to read between C++ quotes.
///
///     # A comment
///     [joined]
///     C:\a    b      C:\a\b
///     <D83D>  <>     <D83D>
///
/// A table begins with its name. Each line below it is a case. Two blanks or more part its columns. <20AC> is a code unit in
/// hexadecimal digits, and <> is the empty text; what else a column holds is taken as it is.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <vector>

class Cases {
public:
    /// The name of the text; it is relative to the project's folder.
    constexpr explicit Cases(char const* file) : file_{file} {}

    /// The cases of a table. Throws std::runtime_error where there are none, or where one has another number of columns.
    template <std::size_t Columns>
    std::vector<std::array<std::wstring, Columns>> of(char const* table) const {
        std::vector<std::array<std::wstring, Columns>> cases;
        for (auto& row : rows(table, Columns)) std::ranges::move(row, cases.emplace_back().begin());
        return cases;
    }

private:
    std::vector<std::vector<std::wstring>> rows(std::string const& table, std::size_t columns) const;

    char const* file_;
};
