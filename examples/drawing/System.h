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
std::wstring fromCodePage(std::string const& bytes, unsigned int codePage);

bool errorIsTerminal();

}
