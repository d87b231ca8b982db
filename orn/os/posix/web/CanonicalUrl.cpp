#include "orn/os/posix/web/CanonicalUrl.h"

#include "orn/os/posix/web/UrlText.h"

#include <algorithm>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;

namespace ORN::os::web {

namespace {

/// Characters up to U+00FF are escaped by their own number, those beyond it not at all.
std::wstring escaped(std::wstring_view text, std::wstring_view unsafe) {
    std::wstring result;
    for (wchar_t const c : text) {
        auto const number = static_cast<unsigned int>(c);
        if (number <= ' ' || (number >= 0x7F && number <= 0xFF) || unsafe.find(c) != unsafe.npos) {
            appendEscape(result, number);
        } else {
            result += c;
        }
    }
    return result;
}

/// Takes ".." away together with the segment before it. Dot segments at the start of the path stay.
std::wstring withoutDotSegments(std::wstring_view path) {
    auto const isDots = [](std::wstring_view segment) { return segment == L"/."sv || segment == L"/.."sv; };
    std::vector<std::wstring_view> segments;
    for (std::wstring_view rest = path; !rest.empty();) {
        std::wstring_view const segment = rest.substr(0, rest.find(L'/', 1));
        rest.remove_prefix(segment.size());
        if (isDots(segment) && !segments.empty() && !isDots(segments.back())) {
            if (segment == L"/.."sv) segments.pop_back();
            if (rest.empty()) segments.push_back(L"/"sv);
        } else {
            segments.push_back(segment);
        }
    }
    std::wstring result;
    for (std::wstring_view const segment : segments) result += segment;
    return result;
}

/// The size of the root, which names the place where the path begins: "//host", and for a file also "///C:".
std::size_t rootSize(std::wstring_view text, bool isFile) {
    if (!text.starts_with(L"//"sv)) return 0;
    if (isFile && text.starts_with(L"///"sv) && startsWithDrive(text.substr(3))) return 5;
    return std::min(text.find(L'/', 2), text.size());
}

/// Takes tabs away, and blanks at both ends.
void trim(std::wstring& url) {
    auto const isBlank = [](wchar_t c) { return static_cast<char32_t>(c) <= U' '; };
    std::erase(url, L'\t');
    while (!url.empty() && isBlank(url.back())) url.pop_back();
    url.erase(url.begin(), std::find_if_not(url.begin(), url.end(), isBlank));
}

void addFileScheme(std::wstring& url) {
    if (startsWithDrive(url))
        url.insert(0, L"file:///");
    else if (url.starts_with(L"\\\\"sv))
        url.insert(0, L"file:");
}

/// Gives the path of a file the empty host that it lacks: "/a" and "//C:" become "///a" and "///C:".
void addFileRoot(std::wstring& path) {
    if (path.starts_with(L'/') && !path.starts_with(L"//"sv)) path.insert(0, L"//");
    if (path.starts_with(L"//"sv) && startsWithDrive(std::wstring_view{path}.substr(2))) path.insert(2, L"/");
}

}

// A URL is its scheme, a root, a path, and what follows the path, as it is.
std::wstring canonicalUrl(std::wstring url) {
    trim(url);
    addFileScheme(url);
    std::wstring_view const scheme = schemeOf(url);
    bool const isFile = startsWithoutCase(scheme, L"file:"sv);
    bool const isWeb = startsWithoutCase(scheme, L"http:"sv) || startsWithoutCase(scheme, L"https:"sv);
    // In the name of a file # is a character like any other.
    std::size_t const end = std::min(url.find_first_of(isFile ? L"?" : L"?#", scheme.size()), url.size());
    std::wstring path = url.substr(scheme.size(), end - scheme.size());

    if (isFile || isWeb) std::replace(path.begin(), path.end(), L'\\', L'/');
    if (isFile) addFileRoot(path);
    std::wstring const root = path.substr(0, rootSize(path, isFile));
    path.erase(0, root.size());
    if (path.empty() && root.size() > 2) path = L"/";

    // An opaque URL, such as mailto:a@b, has no path. A slash in it divides nothing, and is escaped.
    bool const opaque = !scheme.empty() && !isFile && root.empty() && !path.starts_with(L'/');
    if (path.starts_with(L'/')) path = withoutDotSegments(path);
    if (root.empty() && path.starts_with(L"//"sv))
        path.insert(0, L"/.");  // otherwise its beginning would become a root
    if (isFile && root.size() == 2 && path.size() == 3 && startsWithDrive(path.substr(1))) path += L'/';
    return std::wstring{scheme} + escaped(root, L"\"<>\\^`{|}&"sv) +
           escaped(path, opaque ? L"\"<>[\\]^`{|}&/"sv : L"\"<>[\\]^`{|}&#"sv) + url.substr(end);
}

}
