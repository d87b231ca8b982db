/// What the programs need of the system and the library does not give.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace drawing {

/// The arguments behind the program's name, as wide strings.
std::vector<std::wstring> arguments(int argc, char* const argv[]);

/// A file name of the library's kind for the standard library.
std::filesystem::path pathOf(std::wstring const& name);

/// The same the other way.
std::wstring nameOf(std::filesystem::path const& path);

/// Makes the standard streams take bytes as they are, and a console read them as UTF-8.
void prepareOutput();

/// Bytes in a code page, by its number, as text; empty when the system does not know the page or the bytes are no text.
/// The library converts UTF-8, UTF-16 and the system's own code page only; DXF files name any that Windows has.
std::wstring fromCodePage(std::string const& bytes, unsigned int codePage);

/// Windows makes a console for a program that it did not start from one. A program with windows gives such a console up;
/// from then on writeError shows boxes, unless standard error goes to a file. Does nothing elsewhere.
void leaveOwnConsole();

/// One line on standard error, or in a box.
void writeError(std::wstring const& line);

/// Whether a standard stream is shown on a terminal or a console.
/// @{
bool outputIsTerminal();
bool errorIsTerminal();
/// @}

}
