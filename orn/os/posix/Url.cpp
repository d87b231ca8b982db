#include "orn/os/Url.h"

#include "orn/os/Fault.h"
#include "orn/os/posix/NativeName.h"
#include "orn/os/posix/web/CanonicalUrl.h"
#include "orn/os/posix/web/UrlText.h"

#include <string_view>
#include <utility>

using namespace std::string_view_literals;

namespace ORN::os {

namespace {

HRESULT const done = 0, nothingToDo = 1;
HRESULT const invalidPointer = static_cast<HRESULT>(0x80004003), unspecified = static_cast<HRESULT>(0x80004005);

/// The URL of a file by the bytes of its full name.
std::wstring fileUrl(std::string const& name) {
    std::wstring url = L"file://";
    for (char const byte : name) {
        auto const c = static_cast<unsigned char>(byte);
        // RFC 3986, section 3.3: these stand for themselves in a path. That document has & among them, too, but
        // canonicalUrl() escapes it as well.
        if (web::isLetter(c) || web::isDigit(c) || L"/-._~!$'()*+,;=:@"sv.find(c) != std::wstring_view::npos) {
            url += static_cast<wchar_t>(c);
        } else {
            web::appendEscape(url, c);
        }
    }
    return url;
}

// Names of hosts often tell the scheme, as Windows lists them.
struct Guess {
    std::wstring_view start, scheme;
};
constexpr Guess guesses[] = {
    {L"ftp", L"ftp://"},     {L"gopher", L"gopher://"}, {L"home", L"http://"},
    {L"mosaic", L"http://"}, {L"www", L"http://"},
};

// Refuses what the buffers of the Windows functions could not take, terminator included.
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
        int const high = *url == L'%' ? web::hexValue(url[1]) : -1;
        // url[2] is read only behind a digit, so never behind the terminator.
        int const low = high >= 0 ? web::hexValue(url[2]) : -1;
        text += low >= 0 ? static_cast<wchar_t>(16 * high + low) : *url;
        if (low >= 0) url += 2;
    }
    return give(std::move(text), result);
}

HRESULT canonicalizeUrl(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlCanonicalize")) return unspecified;
    return give(web::canonicalUrl(url), result);
}

HRESULT applyUrlScheme(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlApplyScheme")) return unspecified;
    std::wstring_view const text = url;
    if (!web::schemeOf(text).empty()) return nothingToDo;
    if (web::startsWithDrive(text) || text.starts_with(L"\\\\"sv)) {
        // In the name of a file a per cent sign begins no escape.
        std::wstring name;
        for (wchar_t const c : text) name += c != L'%' ? std::wstring(1, c) : L"%25";
        return give(web::canonicalUrl(std::move(name)), result);
    }
    if (text.starts_with(L'/') && !text.starts_with(L"//"sv)) {
        std::string const name = nativeName(url);
        return !name.empty() ? give(fileUrl(name), result) : nothingToDo;
    }
    for (auto const& [start, scheme] : guesses)
        if (web::startsWithoutCase(text, start)) return give(std::wstring{scheme}.append(text), result);
    return nothingToDo;
}

}
