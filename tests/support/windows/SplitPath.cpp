#include "tests/support/SplitPath.h"

#include <cstdlib>

SplitPath::SplitPath(std::wstring const& path) {
    wchar_t parts[4][_MAX_PATH];
    ::_wsplitpath(path.c_str(), parts[0], parts[1], parts[2], parts[3]);
    drive = parts[0];
    directory = parts[1];
    base = parts[2];
    extension = parts[3];
}
