/// A file name in the four parts of the Windows runtime's splitter; joined in order they are the name.
#pragma once

#include <string_view>

namespace ORN {

struct PathParts {
    std::wstring_view drive;      ///< one character and its colon, or empty
    std::wstring_view directory;  ///< up to and including the last slash of either kind
    std::wstring_view base;
    std::wstring_view extension;  ///< from the last dot of the name on

    explicit PathParts(std::wstring_view path) noexcept {
        drive = path.substr(0, path.size() > 1 && path[1] == L':' ? 2 : 0);
        path.remove_prefix(drive.size());
        directory = path.substr(0, path.find_last_of(L"/\\") + 1);
        path.remove_prefix(directory.size());
        base = path.substr(0, path.rfind(L'.'));
        extension = path.substr(base.size());
    }
};

}
