/// A splitter of file names that is not the library's: the runtime's own on Windows, a walk from the end elsewhere.
#pragma once

#include <string>

struct SplitPath {
    std::wstring drive, directory, base, extension;

    explicit SplitPath(std::wstring const& path);
};
