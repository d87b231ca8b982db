#include "fuzz/Oracles.h"

#include <cstdlib>

char const* fuzz::codePage() { return nullptr; }
std::optional<std::string> fuzz::converted(char const*, char const*, std::string_view) { return std::nullopt; }
std::optional<std::wstring> fuzz::describedByLcms(std::string const&) { return std::nullopt; }
std::optional<std::string> fuzz::normalised(std::string const&) { return std::nullopt; }

std::optional<std::pair<std::wstring, std::wstring>> fuzz::splitBySystem(std::wstring const& path) {
    wchar_t base[_MAX_PATH], extension[_MAX_PATH];
    if (path.size() >= _MAX_PATH || path.find(L'\0') != path.npos) return std::nullopt;
    if (::_wsplitpath_s(path.c_str(), nullptr, 0, nullptr, 0, base, _MAX_PATH, extension, _MAX_PATH) != 0)
        return std::nullopt;
    return std::pair{std::wstring{base}, std::wstring{extension}};
}
