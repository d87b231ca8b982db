#include "orn/os/Url.h"

#include "orn/os/Fault.h"

#include <cwchar>

#include <windows.h>

#include <shlwapi.h>

namespace ORN::os {

namespace {

template <typename Call>
HRESULT fill(std::wstring& result, Call call) {
    wchar_t buffer[urlRoom] = {};
    // The length goes in as the room with the terminator, and comes out without the terminator.
    DWORD length = urlRoom;
    HRESULT const status = call(buffer, &length);
    // Some systems leave the length alone when there is nothing to do.
    // S_FALSE, for no scheme to add, is no failure, but has no result.
    if (status == S_OK) result.assign(buffer, length < urlRoom ? length : std::wcslen(buffer));
    return status;
}

}

HRESULT unescapeUrl(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlUnescape")) return E_FAIL;
    // Only a call that works in place writes to its argument.
    return fill(result, [url](wchar_t* buffer, DWORD* length) {
        return ::UrlUnescapeW(const_cast<wchar_t*>(url), buffer, length, 0);
    });
}

HRESULT canonicalizeUrl(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlCanonicalize")) return E_FAIL;
    return fill(result, [url](wchar_t* buffer, DWORD* length) {
        return ::UrlCanonicalizeW(url, buffer, length, URL_ESCAPE_UNSAFE);
    });
}

HRESULT applyUrlScheme(wchar_t const* url, std::wstring& result) {
    if (ORN_OS_REFUSED("UrlApplyScheme")) return E_FAIL;
    return fill(result, [url](wchar_t* buffer, DWORD* length) {
        return ::UrlApplySchemeW(url, buffer, length, URL_APPLY_GUESSSCHEME | URL_APPLY_GUESSFILE);
    });
}

}
