// File names are divided as a splitter that looks at one unit after the other divides them, what is divided joins again,
// a shortened name is the longest that fits, and a full name is the standard library's normal form.
#include "orn/text/FileName.h"

#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"

#include <filesystem>

namespace {

struct Divided {
    std::wstring directory, base, extension;
};

Divided divideUrl(std::wstring const& url) {
    Divided result;
    for (wchar_t const unit : url) {
        if (unit == L'.') {
            result.base += result.extension;
            result.extension.clear();
        }
        (unit == L'.' || !result.extension.empty() ? result.extension : result.base) += unit;
        if (unit == L'/') {
            result.directory += result.base + result.extension;
            result.base.clear();
            result.extension.clear();
        }
    }
    return result;
}

Divided divide(std::wstring const& path) {
    std::wstring const drive = path.find(L':', 1) == 1 ? path.substr(0, 2) : L"";
    std::wstring directory, base, extension;
    for (wchar_t const unit : path.substr(drive.size())) {
        if (unit == L'/' || unit == L'\\') {
            directory += base + extension + unit;
            base.clear();
            extension.clear();
            continue;
        }
        if (unit == L'.') {
            base += extension;
            extension.clear();
        }
        (unit == L'.' || !extension.empty() ? extension : base) += unit;
    }

    std::wstring result = drive;
    std::wstring const shorter = directory.substr(0, directory.empty() ? 0 : directory.size() - 1);
    if (directory.substr(0, 2) == L"\\\\")
        result = shorter.find(L'\\', 2) == std::wstring::npos ? path : drive + shorter;
    else if (directory.size() == 1)
        result += directory;
    else if (!directory.empty())
        result += shorter;
    else if (!drive.empty())
        result += L'\\';
    return {result, base, extension};
}

// ASCII alone has case without a locale, and a text ends at a zero.
std::wstring folded(std::wstring const& text) {
    std::wstring result;
    for (wchar_t const unit : text) {
        if (unit == 0) break;
        result += unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
    }
    return result;
}

unsigned int placeOf(std::wstring const& extension, std::wstring const& list) {
    if (list.empty()) return 0;
    unsigned int number = 1;
    std::wstring entry;
    for (wchar_t const unit : list + L'/') {
        if (unit != L'/') {
            entry += unit;
            continue;
        }
        if (folded(entry) == folded(extension)) return number;
        ++number;
        entry.clear();
    }
    return 0;
}

std::wstring shortened(std::wstring const& path, std::size_t most) {
    std::wstring name;
    std::wstring const leading = getDirectory(getDirectory(path, name));
    if (path.size() <= most) return path;
    for (std::size_t cut = leading.size() + 1; cut-- > 0;) {
        bool const cutsPair = cut > 0 && cut < leading.size() &&
                              isSurrogateA(static_cast<unsigned int>(leading[cut - 1])) &&
                              isSurrogateB(static_cast<unsigned int>(leading[cut]));
        if (std::wstring const candidate = leading.substr(0, cut) + L"..." + name;
            !cutsPair && candidate.size() <= most)
            return candidate;
    }
    return name;
}

bool mayStand(CodePoint c) {
    std::wstring const signs = L" $%'-_@~`!(){}^#&+,;=[].";
    if (c.value() <= 127) return isUalnum(c) || signs.find(std::wstring{c}) != std::wstring::npos;
    return c.value() == 0xFEFF || (0x7FFC1FFEu >> unicodeClass(c) & 1) != 0;
}

// The slash that may stand at its end means nothing, nor do more than one at its beginning.
std::string normal(std::string name) {
    while (name.starts_with("//")) name.erase(0, 1);
    std::string const result = (std::filesystem::current_path() / name).lexically_normal().string();
    return result.size() > 1 && result.back() == '/' ? result.substr(0, result.size() - 1) : result;
}

}

ORN_LAW(FileName) {
    std::size_t const most = input.option(80);
    std::wstring const path = input.text();
    bool const url = path.find(L"://") != std::wstring::npos;
    auto const [directory, base, extension] = url ? divideUrl(path) : divide(path);

    std::wstring name, baseFound, extensionFound;
    same("is a URL", isURL(path), url);
    same("directory", getDirectory(path), directory);
    same("directory beside the name", getDirectory(path, name), directory);
    same("name", name, base + extension);
    same("directory beside both parts", getDirectory(path, baseFound, extensionFound), directory);
    same("base", baseFound, base);
    same("extension", extensionFound, extension);

    std::wstring const joined = joinDirectory(directory, name);
    if (!directory.empty() && directory != path && !name.empty() && name.find(L':') == std::wstring::npos) {
        std::wstring again;
        std::wstring const sameDirectory = getDirectory(joined, again);
        same("the name joined is found again", again, name);
        if (directory.back() != L'/' && directory.back() != L'\\' && !directory.starts_with(L"\\\\"))
            same("and its directory", sameDirectory, directory);
    }

    same("may be appended", okToAddToAbsolutePath(path),
         path.find(L':') == std::wstring::npos && path.find(L'\\') != 0);
    same("shortened", abbreviateFilename(path, most), shortened(path, most));
    for (std::wstring const& list : {path, L".dwg/" + extension + L"/" + path})
        same("file type", analyzeFileType(path, list), placeOf(extension, list));
    for (CodePointEnumerator e{path}; e; ++e) same("file character", isFileChar(*e), mayStand(*e));

    std::wstring const full = absoluteFilename(path);
    if (url) {
        same("a URL stays", full, path);
    } else if (path.find(L'\0') == std::wstring::npos) {
        same("full name", normal(utf8(full)), normal(utf8(path)));
        same("a full name stays", absoluteFilename(full), full);
        holds("a full name begins at the root", full.starts_with(L'/'));
    } else {
        same("no full name", full, L"");
    }
}
