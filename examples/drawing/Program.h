/// What the main functions of the programs share.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace drawing {

/// Calls `body` with the arguments behind the program's name. Returns the exit code: 0, or 1 (2 for a CommandLineError)
/// after one line on standard error that says what `body` threw.
int runProgram(std::string const& name, int argc, char* const argv[],
               std::function<void(std::vector<std::wstring> const&)> const& body);

/// Whether a terminal would obey the character instead of showing it: C0 without exception, DEL and C1.
constexpr bool isControl(wchar_t c) { return c < L' ' || (c >= 0x7F && c <= 0x9F); }

/// Writes one line about what is wrong to standard error. Each control character becomes a blank.
void complain(std::wstring const& what);

/// Writes one line about a file to standard error.
void remark(std::string const& program, std::wstring const& file, std::wstring const& what);

/// Writes the whole text to standard output, or throws a std::runtime_error.
void print(std::string const& text);

}
