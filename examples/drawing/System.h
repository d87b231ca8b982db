/// What the programs need from the system beyond what the library offers.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace drawing {

/// The arguments behind the program's name, as wide strings.
std::vector<std::wstring> arguments(int argc, char* const argv[]);

/// Converts a file name of the library to a path of the standard library.
std::filesystem::path pathOf(std::wstring const& name);

/// Converts a path of the standard library to a file name of the library.
std::wstring nameOf(std::filesystem::path const& path);

/// Lets the standard streams pass bytes on unchanged, and lets a console read them as UTF-8.
void prepareOutput();

/// Decodes bytes of a code page, which is given by its Windows number. The result is empty when the system does not know
/// the page, or when the bytes are not valid in it. The library itself only converts UTF-8, UTF-16 and the system's own
/// code page; a DXF file may name any code page of Windows.
std::wstring fromCodePage(std::string const& bytes, unsigned int codePage);

/// Windows makes a console for a program that it did not start from one. A program with windows gives such a console up;
/// from then on writeError shows boxes, unless standard error goes to a file. Does nothing elsewhere.
void leaveOwnConsole();

/// Writes one line to standard error, or shows it in a box.
void writeError(std::wstring const& line);

/// Whether a standard stream is shown on a terminal or a console.
/// @{
bool outputIsTerminal();
bool errorIsTerminal();
/// @}

}
