#include "orn/os/Url.h"

#include "orn/os/Fault.h"
#include "orn/os/posix/NativeName.h"

#include <algorithm>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;

namespace ORN::os {

namespace {

HRESULT const done = 0, nothingToDo = 1;
HRESULT const invalidPointer = static_cast<HRESULT>(0x80004003), unspecified = static_cast<HRESULT>(0x80004005);

constexpr bool isDigit(wchar_t c) noexcept { return c >= L'0' && c <= L'9'; }
constexpr bool isLetter(wchar_t c) noexcept { return (c | 0x20) >= L'a' && (c | 0x20) <= L'z'; }
constexpr wchar_t lower(wchar_t c) noexcept { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c | 0x20) : c; }

constexpr int hexValue(wchar_t c) noexcept {
    if (isDigit(c)) return c - L'0';
    return lower(c) >= L'a' && lower(c) <= L'f' ? lower(c) - L'a' + 10 : -1;
}

void appendEscape(std::wstring& text, unsigned int byte) {
    constexpr std::wstring_view digits = L"0123456789ABCDEF";
    ((text += L'%') += digits[byte >> 4]) += digits[byte & 15];
}

bool startsWithoutCase(std::wstring_view text, std::wstring_view lowerCaseStart) {
    return text.size() >= lowerCaseStart.size() &&
           std::equal(lowerCaseStart.begin(), lowerCaseStart.end(), text.begin(),
                      [](wchar_t a, wchar_t b) { return a == lower(b); });
}

bool startsWithDrive(std::wstring_view text) { return text.size() > 1 && isLetter(text[0]) && text[1] == L':'; }

/// With its colon; one character before a colon is a drive.
std::wstring_view schemeOf(std::wstring_view url) {
    auto const colon = std::find_if_not(url.begin(), url.end(), [](wchar_t c) {
        return isLetter(c) || isDigit(c) || c == L'+' || c == L'-' || c == L'.';
    });
    bool const found = colon != url.end() && *colon == L':' && colon - url.begin() > 1;
    return found ? url.substr(0, static_cast<std::size_t>(colon - url.begin()) + 1) : std::wstring_view{};
}

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

/// The size of what names the place where the path begins: "//host"; of a file also "///C:".
std::size_t rootSize(std::wstring_view text, bool isFile) {
    if (!text.starts_with(L"//"sv)) return 0;
    if (isFile && text.starts_with(L"///"sv) && startsWithDrive(text.substr(3))) return 5;
    return std::min(text.find(L'/', 2), text.size());
}

// A URL is its scheme, a root, a path, and what follows the path, as it is.
std::wstring canonical(std::wstring url) {
    auto const isBlank = [](wchar_t c) { return static_cast<char32_t>(c) <= U' '; };
    std::erase(url, L'\t');
    while (!url.empty() && isBlank(url.back())) url.pop_back();
    url.erase(url.begin(), std::find_if_not(url.begin(), url.end(), isBlank));
    if (startsWithDrive(url)) {
        url.insert(0, L"file:///");
    } else if (url.starts_with(L"\\\\"sv)) {
        url.insert(0, L"file:");
    }

    std::wstring_view const scheme = schemeOf(url);
    bool const isFile = startsWithoutCase(scheme, L"file:"sv);
    bool const isWeb = startsWithoutCase(scheme, L"http:"sv) || startsWithoutCase(scheme, L"https:"sv);
    std::size_t const end = std::min(url.find_first_of(isFile ? L"?" : L"?#", scheme.size()), url.size());
    std::wstring path = url.substr(scheme.size(), end - scheme.size());

    if (isFile || isWeb) std::replace(path.begin(), path.end(), L'\\', L'/');
    if (isFile && path.starts_with(L'/') && !path.starts_with(L"//"sv)) path.insert(0, L"//");
    if (isFile && path.starts_with(L"//"sv) && startsWithDrive(std::wstring_view{path}.substr(2))) path.insert(2, L"/");
    std::wstring const root = path.substr(0, rootSize(path, isFile));
    path.erase(0, root.size());
    if (path.empty() && root.size() > 2) path = L"/";

    bool const opaque = !scheme.empty() && !isFile && root.empty() && !path.starts_with(L'/');
    if (path.starts_with(L'/')) path = withoutDotSegments(path);
    if (root.empty() && path.starts_with(L"//"sv)) path.insert(0, L"/.");  // it has no root after, either
    if (isFile && root.size() == 2 && path.size() == 3 && startsWithDrive(path.substr(1))) path += L'/';
    return std::wstring{scheme} + escaped(root, L"\"<>\\^`{|}&"sv) +
           escaped(path, opaque ? L"\"<>[\\]^`{|}&/"sv : L"\"<>[\\]^`{|}&#"sv) + url.substr(end);
}

/// The URL of a file by the bytes of its full name.
std::wstring fileUrl(std::string const& name) {
    std::wstring url = L"file://";
    for (char const byte : name) {
        auto const c = static_cast<unsigned char>(byte);
        if (isLetter(c) || isDigit(c) || L"/-._~!$'()*+,;=:@"sv.find(c) != std::wstring_view::npos) {
            url += static_cast<wchar_t>(c);
        } else {
            appendEscape(url, c);
        }
    }
    return url;
}

struct Guess {
    std::wstring_view start, scheme;
};
constexpr Guess guesses[] = {
    {L"ftp", L"ftp://"},     {L"gopher", L"gopher://"}, {L"home", L"http://"},
    {L"mosaic", L"http://"}, {L"www", L"http://"},
};

HRESULT give(std::wstring text, std::wstring& result) {
    if (text.size() >= urlRoom) return invalidPointer;
    result = std::move(text);
    return done;
}

}

HRESULT unescapeUrl(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlUnescape")) return unspecified;
    std::wstring text;
    for (; *url != L'\0'; ++url) {
        int const high = *url == L'%' ? hexValue(url[1]) : -1;
        int const low = high >= 0 ? hexValue(url[2]) : -1;
        text += low >= 0 ? static_cast<wchar_t>(16 * high + low) : *url;
        if (low >= 0) url += 2;
    }
    return give(std::move(text), result);
}

HRESULT canonicalizeUrl(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlCanonicalize")) return unspecified;
    return give(canonical(url), result);
}

HRESULT applyUrlScheme(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlApplyScheme")) return unspecified;
    std::wstring_view const text = url;
    if (!schemeOf(text).empty()) return nothingToDo;
    if (startsWithDrive(text) || text.starts_with(L"\\\\"sv)) {
        std::wstring name;
        for (wchar_t const c : text) name += c != L'%' ? std::wstring(1, c) : L"%25";
        return give(canonical(std::move(name)), result);
    }
    if (text.starts_with(L'/') && !text.starts_with(L"//"sv)) {
        std::string const name = nativeName(url);
        return !name.empty() ? give(fileUrl(name), result) : nothingToDo;
    }
    for (auto const& [start, scheme] : guesses)
        if (startsWithoutCase(text, start)) return give(std::wstring{scheme}.append(text), result);
    return nothingToDo;
}

}
