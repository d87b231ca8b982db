// File names are divided as a splitter divides them that looks at one unit after the other, and as the system's does, where
// there is one. What is divided joins again, and a full name is the standard library's normal form.
#include "orn/text/FileName.h"

#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/text/Encoding.h"

#include <filesystem>

namespace {

struct Divided {
    std::wstring directory, base, extension;
};

Divided divide(std::wstring const& path, bool url) {
    std::wstring const drive = !url && path.find(L':', 1) == 1 ? path.substr(0, 2) : L"";
    std::size_t const begin = std::max(path.find_last_of(url ? L"/" : L"/\\") + 1, drive.size());
    std::size_t const point = std::max(begin, std::min(path.rfind(L'.'), path.size()));
    std::size_t const end = path[point] == L'.' ? point : path.size();
    Divided result{path.substr(0, begin), path.substr(begin, end - begin), path.substr(end)};
    if (url) return result;

    // The separator at the end of a directory goes, unless it is the root; a server alone is no directory.
    std::wstring const directory = path.substr(drive.size(), begin - drive.size());
    if (directory.starts_with(L"\\\\") && directory.find(L'\\', 2) >= directory.size() - 1)
        result.directory = path;
    else if (directory.size() > 1)
        result.directory.pop_back();
    else if (directory.empty() && !drive.empty())
        result.directory += L'\\';
    return result;
}

// The slash that may stand at its end means nothing, nor do more than one at its beginning.
std::string normal(std::string name) {
    while (name.starts_with("//")) name.erase(0, 1);
    std::string const result = (std::filesystem::current_path() / name).lexically_normal().string();
    return result.size() > 1 && result.back() == '/' ? result.substr(0, result.size() - 1) : result;
}

void checkFullName(std::wstring const& path) {
    std::wstring const full = absoluteFilename(path);
    if (path.find(L"://") != std::wstring::npos) {
        fuzz::same("a URL stays", full, path);
    } else if (path.find(L'\0') != std::wstring::npos) {
        fuzz::same("no full name", full, L"");
    } else if (std::filesystem::path::preferred_separator == '/') {
        fuzz::same("full name", normal(utf8(full)), normal(utf8(path)));
        fuzz::same("a full name stays", absoluteFilename(full), full);
        fuzz::holds("a full name begins at the root", full.starts_with(L'/'));
    }
}

}

ORN_LAW(FileName) {
    std::wstring const path = input.text();
    bool const url = path.find(L"://") != std::wstring::npos;
    auto const [directory, base, extension] = divide(path, url);

    std::wstring name, baseFound, extensionFound;
    same("is a URL", isURL(path), url);
    same("directory", getDirectory(path), directory);
    same("directory beside the name", getDirectory(path, name), directory);
    same("name", name, base + extension);
    same("directory beside both parts", getDirectory(path, baseFound, extensionFound), directory);
    same("base", baseFound, base);
    same("extension", extensionFound, extension);
    if (auto const parts = splitBySystem(path); parts && !url) {
        same("the system's base", base, parts->first);
        same("the system's extension", extension, parts->second);
    }

    std::wstring const joined = joinDirectory(directory, name);
    if (!directory.empty() && directory != path && !name.empty() && name.find(L':') == std::wstring::npos) {
        std::wstring again;
        std::wstring const sameDirectory = getDirectory(joined, again);
        same("the name joined is found again", again, name);
        if (directory.back() != L'/' && directory.back() != L'\\' && !directory.starts_with(L"\\\\"))
            same("and its directory", sameDirectory, directory);
    }
    checkFullName(path);
}
