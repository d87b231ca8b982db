#include "orn/text/FileName.h"

#include "orn/os/Path.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/Strings.h"

#include <algorithm>
#include <string_view>
#include <utility>

using namespace std::string_view_literals;

namespace {

// A file name in the four parts of the Windows runtime's splitter; joined in order they are the name.
struct PathParts {
    std::wstring_view drive;      // one character and its colon, or empty
    std::wstring_view directory;  // up to and including the last slash of either kind
    std::wstring_view base;
    std::wstring_view extension;  // from the last dot of the name on

    explicit PathParts(std::wstring_view path) noexcept {
        drive = path.substr(0, path.size() > 1 && path[1] == L':' ? 2 : 0);
        path.remove_prefix(drive.size());
        directory = path.substr(0, path.find_last_of(L"/\\") + 1);
        path.remove_prefix(directory.size());
        base = path.substr(0, path.rfind(L'.'));
        extension = path.substr(base.size());
    }
};

struct Divided {
    std::wstring directory, base, extension;
};

// The directory of a URL keeps its last slash. Without any slash, rfind() + 1 is 0 and all of it is the name.
Divided divideUrl(std::wstring const& url) {
    std::size_t const name = url.rfind(L'/') + 1;
    std::size_t const dot = url.rfind(L'.');
    std::size_t const end = dot != std::wstring::npos && dot >= name ? dot : url.size();
    return {url.substr(0, name), url.substr(name, end - name), url.substr(end)};
}

std::wstring directoryOf(std::wstring const& path, PathParts const& parts) {
    std::wstring result{parts.drive};
    std::wstring_view directory = parts.directory;
    if (directory.empty()) {
        // A name behind a bare drive counts as one in the drive's root.
        if (!result.empty()) result += L'\\';
    } else if (!directory.starts_with(L"\\\\"sv)) {
        if (directory.size() > 1) directory.remove_suffix(1);
        result += directory;
    } else {
        // A server without a share is no directory.
        directory.remove_suffix(1);
        if (directory.find(L'\\', 2) == std::wstring_view::npos) return path;
        result += directory;
    }
    return result;
}

Divided divide(std::wstring const& path) {
    if (isURL(path)) return divideUrl(path);
    PathParts const parts{path};
    return {directoryOf(path, parts), std::wstring{parts.base}, std::wstring{parts.extension}};
}

// A bit for each category but unassigned, control and format characters, surrogates and private use.
constexpr unsigned int fileCategories = 0x7FFC1FFE;

}

bool isURL(std::wstring const& text) { return text.find(L"://") != std::wstring::npos; }

bool isFileChar(CodePoint c) noexcept {
    unsigned char const category = unicodeClass(c);
    // U+FEFF is a format character, and allowed all the same.
    if (c.value() > 127) return (fileCategories >> category & 1) != 0 || c.value() == 0xFEFF;
    return isUalnum(c) ||
           L" $%'-_@~`!(){}^#&+,;=[]."sv.find(static_cast<wchar_t>(c.value())) != std::wstring_view::npos;
}

std::wstring getDirectory(std::wstring const& path) { return divide(path).directory; }

std::wstring getDirectory(std::wstring const& path, std::wstring& name) {
    Divided divided = divide(path);
    name = divided.base + divided.extension;
    return divided.directory;
}

std::wstring getDirectory(std::wstring const& path, std::wstring& base, std::wstring& extension) {
    Divided divided = divide(path);
    base = std::move(divided.base);
    extension = std::move(divided.extension);
    return divided.directory;
}

std::wstring joinDirectory(std::wstring const& directory, std::wstring const& name) {
    std::wstring result;
    result.reserve(directory.size() + 1 + name.size());
    result = directory;
    if (!result.empty() && result.back() != L'\\' && result.back() != L'/') {
        // A backslash or a drive tells a directory of Windows, on whatever system the program runs.
        bool const ofThisSystem = directory.find(L'\\') == std::wstring::npos && PathParts{directory}.drive.empty();
        result += isURL(directory) ? L'/' : ofThisSystem ? ORN::os::pathSeparator() : L'\\';
    }
    return result += name;
}

std::wstring absoluteFilename(std::wstring const& path) { return isURL(path) ? path : ORN::os::fullPath(path); }

bool okToAddToAbsolutePath(std::wstring const& path) {
    return !path.starts_with(L'\\') && path.find(L':') == std::wstring::npos;
}

unsigned int analyzeFileType(std::wstring const& path, std::wstring const& extensions) {
    // An empty list has no member, though an empty text between two slashes is one.
    if (extensions.empty()) return 0;
    std::wstring const wanted = lowercase(divide(path).extension);
    unsigned int number = 1;
    for (std::size_t first = 0;; ++number) {
        std::size_t const end = std::min(extensions.find(L'/', first), extensions.size());
        if (lowercase(extensions.substr(first, end - first)) == wanted) return number;
        if (end == extensions.size()) return 0;
        first = end + 1;
    }
}

std::wstring abbreviateFilename(std::wstring const& path, std::size_t maxLength) {
    if (path.size() <= maxLength) return path;
    std::wstring name;
    // In front of the dots stands the beginning of the directory above the file's own.
    std::wstring leading = getDirectory(getDirectory(path, name));
    std::size_t const needed = name.size() + 3;
    if (needed > maxLength) return name;

    std::size_t cut = maxLength - needed;
    if (cut < leading.size()) {
        auto const unit = [&](std::size_t i) { return static_cast<unsigned int>(leading[i]); };
        // Half a pair is no character.
        if (cut > 0 && isSurrogateA(unit(cut - 1)) && isSurrogateB(unit(cut))) --cut;
        leading.resize(cut);
    }
    return leading + L"..." + name;
}

std::wstring getLongFilename(std::wstring const& path) {
    std::wstring result = ORN::os::longPath(path);
    return !result.empty() ? result : path;
}
