// Escapes are decoded as one reads them, the canonical form is its own, says the same and has nothing unsafe in it, and
// paths lose their dot segments as in libcurl.
#include "orn/text/Url.h"

#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"

#include <algorithm>
#include <cstdlib>
#include <cwctype>
#include <optional>

namespace {

std::size_t const longest = 2083;

std::optional<std::wstring> given(std::wstring (*function)(std::wstring const&), std::wstring const& url) {
    try {
        return function(url);
    } catch (ORN::OrnError const&) {
        return std::nullopt;
    }
}

std::wstring unescaped(std::wstring const& url) {
    std::wstring result;
    for (std::size_t i = 0; i < url.size(); ++i) {
        bool const escape = url[i] == L'%' && i + 2 < url.size() && url[i + 1] < 0x80 && url[i + 2] < 0x80 &&
                            std::iswxdigit(static_cast<wint_t>(url[i + 1])) &&
                            std::iswxdigit(static_cast<wint_t>(url[i + 2]));
        result += escape ? static_cast<wchar_t>(std::wcstol(url.substr(i + 1, 2).c_str(), nullptr, 16)) : url[i];
        if (escape) i += 2;
    }
    return result;
}

bool begins(std::wstring const& text, std::wstring const& start) {
    for (std::size_t i = 0; i != start.size(); ++i)
        if (i == text.size() || (text[i] | (std::iswalpha(static_cast<wint_t>(start[i])) ? 0x20 : 0)) != start[i])
            return false;
    return true;
}

// Nothing is lost or added but blanks at the ends, tabs, dot segments, and the slash that a path begins with.
bool plain(std::wstring const& url) {
    return !url.empty() && url.front() > L' ' && url.back() > L' ' &&
           url.find_first_of(L"\t\\") == std::wstring::npos && url.find(L"/.") == std::wstring::npos &&
           !begins(url, L"file:") && url.find(L':') != 1;
}

void checkCanonical(std::wstring const& url, std::wstring const& canonical) {
    fuzz::same("the canonical form is its own", canonicalizeUrl(canonical), canonical);

    std::wstring const path = canonical.substr(0, canonical.find_first_of(begins(canonical, L"file:") ? L"?" : L"?#"));
    for (wchar_t const unit : path)
        if (unit <= L' ' || (unit >= 0x7F && unit <= 0xFF) ||
            std::wstring{L"\"<>^`{|}&"}.find(unit) != std::wstring::npos)
            fuzz::broken("nothing unsafe before the query", fuzz::shown(canonical), fuzz::shown(url));

    if (!plain(url)) return;
    std::wstring expected = unescaped(url), actual = unescaped(canonical);
    if (actual.size() == expected.size() + 1) {
        std::size_t const host = actual.find(L"//") + 2;
        std::size_t const slash = actual.find(L'/', host);
        if (slash != std::wstring::npos) actual.erase(slash, 1);
    }
    fuzz::same("the canonical form says the same", actual, expected);
}

// Segments by their numbers, never more steps up than down.
std::string path(fuzz::Input& choices) {
    char const* const segments[] = {"a", "b.c", "..", ".", "...", ".d", "e..", "%41"};
    std::string result;
    int depth = 0;
    for (unsigned int count = choices.option(12); count > 0; --count) {
        std::string segment = segments[choices.option(8)];
        if (segment == ".." && depth == 0) segment = "up";
        if (segment == "." && depth == 0) segment = "here";
        depth += segment == ".." ? -1 : segment == "." ? 0 : 1;
        result += '/' + segment;
    }
    return result;
}

}

ORN_LAW(URL) {
    Input choices = input.last(16);
    std::wstring url = input.text();
    url.resize(std::min(url.find(L'\0'), url.size()));

    auto const decoded = given(unescapeUrl, url);
    std::wstring const expected = unescaped(url);
    same("refused for its length", !decoded.has_value(), expected.size() > longest);
    if (decoded) same("escapes decoded", *decoded, expected);

    if (auto const canonical = given(canonicalizeUrl, url)) checkCanonical(url, *canonical);
    if (auto const clean = given(cleanupUrl, url)) {
        holds("no longer than there is room", clean->size() <= longest);
        if (begins(url, L"http:") || begins(url, L"ftp:"))
            same("clean is the canonical form", *clean, canonicalizeUrl(url));
    }

    std::string const structured = "http://host" + path(choices);
    if (auto const plainly = normalised(structured))
        same("dot segments as in libcurl", utf8(canonicalizeUrl(utf8(structured))), *plainly);
}
