#include "tests/support/SplitPath.h"

SplitPath::SplitPath(std::wstring const& path) {
    std::size_t const first = path.size() > 1 && path[1] == L':' ? 2 : 0;
    std::wstring* part = &base;
    for (std::size_t i = path.size(); i > 0; --i) {
        wchar_t const unit = path[i - 1];
        if (i <= first) {
            part = &drive;
        } else if (unit == L'/' || unit == L'\\') {
            part = &directory;
        }
        part->insert(part->begin(), unit);
        if (unit == L'.' && part == &base && extension.empty()) extension.swap(base);
    }
}
