#include "tests/support/SplitPath.h"

#include <regex>

SplitPath::SplitPath(std::wstring const& path) {
    static std::wregex const form{LR"(^(.:)?((?:.*[/\\])?)([^/\\]*?)(\.[^./\\]*)?$)"};
    std::wsmatch match;
    if (!std::regex_match(path, match, form)) return;
    drive = match[1];
    directory = match[2];
    base = match[3];
    extension = match[4];
}
