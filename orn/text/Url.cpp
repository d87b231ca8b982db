#include "orn/text/Url.h"

#include "orn/foundation/Error.h"
#include "orn/os/Download.h"
#include "orn/os/Url.h"
#include "orn/text/Printf.h"
#include "orn/text/Strings.h"
#include "ornmsg/ornmsg.h"

namespace {

[[noreturn]] void fail(unsigned int message, std::wstring const& url, std::wstring const& reason) {
    throw ORN::OrnError{stringPrintf(ornMsg(message).c_str(), url.c_str(), reason.c_str())};
}

void require(HRESULT status, std::wstring const& url) {
    if (status < 0) fail(278, url, formatMessage(static_cast<DWORD>(status), nullptr));
}

// The system would try whatever else is registered with it.
HRESULT requireScheme(std::wstring const& url) {
    std::size_t const colon = url.find(L':');
    if (colon == std::wstring::npos || colon == 0) return static_cast<HRESULT>(0x800C0002);  // no URL
    std::wstring const scheme = simpleLowercase(url.substr(0, colon));
    bool const known = scheme == L"http" || scheme == L"https" || scheme == L"file";
    return known ? 0 : static_cast<HRESULT>(0x800C000D);  // no protocol for it
}

}

std::wstring unescapeUrl(std::wstring const& url) {
    std::wstring result;
    require(ORN::os::unescapeUrl(url.c_str(), result), url);
    return result;
}

std::wstring canonicalizeUrl(std::wstring const& url) {
    std::wstring result;
    require(ORN::os::canonicalizeUrl(url.c_str(), result), url);
    return result;
}

std::wstring cleanupUrl(std::wstring const& url) {
    std::wstring changed;
    // The status is 1, and the result is not set, when there is no scheme to add.
    HRESULT const status = ORN::os::applyUrlScheme(url.c_str(), changed);
    require(status, url);
    return canonicalizeUrl(status == 0 ? changed : url);
}

std::wstring downloadUrlToCache(std::wstring const& url) {
    std::wstring file;
    HRESULT status = requireScheme(url);
    if (status >= 0) status = ORN::os::downloadToCache(url.c_str(), file);
    // The texts for the statuses of downloads are in the message table of this library.
    if (status < 0) fail(280, url, formatMessage(static_cast<DWORD>(status), L"urlmon.dll"));
    return file;
}
