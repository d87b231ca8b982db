/// URLs, by the system's own rules: those of the Windows shell, and elsewhere an equal of them.
///
/// A URL ends at its first zero. Results are at most 2083 characters (UTF-16 units) long. What fails throws
/// ORN::OrnError with the URL and the reason. Any number of threads may call these functions.
///
/// Outside Windows, where its versions differ or a file could not be reached otherwise:
/// - "." at the end of a path goes as ".." does, and more ".." than there is to go up all stay;
/// - dot segments of names with a drive go, and network names become "file:" URLs in canonicalizeUrl, too;
/// - a query keeps its backslashes and dots, and after a host alone "/" comes before it;
/// - the brackets of a numeric host stay;
/// - cleanupUrl also makes a "file:" URL of a full name in the system's own form, "/a/b", by the bytes of the name.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <string>
#include <string_view>

/// Each `%` with two hexadecimal digits is the character of that number, up to U+00FF; any other `%` stays. The result
/// may hold what was hidden in the URL: `%00` is a zero, at which a name ends for the system, and `%2F` a slash.
ORN_API std::wstring unescapeUrl(std::wstring const& url);

/// The canonical form: without blanks around it and without dot segments in its path, save those that the path starts
/// with. In the schemes http, https and file a backslash is a slash. Characters that are unsafe in a path are escaped:
/// blanks, control characters, quote, backslash, grave accent, `<>[]^{|}&` and U+007F to U+00FF; for file also `#`, and
/// the slash where none follows the scheme, as in "mailto:". What is escaped stays so; a query and a fragment stay as
/// they are. A name with a drive becomes a "file:" URL.
ORN_API std::wstring canonicalizeUrl(std::wstring const& url);

/// The canonical form, with a scheme for what has none but looks as if it should: "file:" for full names of files,
/// "http://" for what begins with "www", "home" or "mosaic", "ftp://" for "ftp", "gopher://" for "gopher" (in any case of
/// letters; on Windows the list is the system's own and may be another). Nothing looks behind these beginnings:
/// "homework.txt" is "http://homework.txt/". Other texts only become canonical.
ORN_API std::wstring cleanupUrl(std::wstring const& url);

/// Downloads what the URL stands for into the user's cache, and returns the name of the file. It belongs to the cache: a
/// later download of the same URL may put another in its place, and the user may empty the cache. A download that fails
/// leaves nothing there. Schemes other than http, https and file are refused before the system sees the URL; mind that
/// the system may log on to the host that a file URL names. The calling thread needs no COM apartment.
///
/// Outside Windows the cache is "orn/downloads" in $XDG_CACHE_HOME or ~/.cache, redirections lead to http and https, and
/// a download breaks off that gets less than 1,000 bytes a second for a minute, or takes longer than an hour. On
/// Windows it may take as long as data keeps coming.
ORN_API std::wstring downloadUrlToCache(std::wstring const& url);

/// The same of views, which are copied.
/// @{
template <std::same_as<std::wstring_view> View>
std::wstring unescapeUrl(View url) {
    return unescapeUrl(std::wstring{url});
}
template <std::same_as<std::wstring_view> View>
std::wstring canonicalizeUrl(View url) {
    return canonicalizeUrl(std::wstring{url});
}
template <std::same_as<std::wstring_view> View>
std::wstring cleanupUrl(View url) {
    return cleanupUrl(std::wstring{url});
}
template <std::same_as<std::wstring_view> View>
std::wstring downloadUrlToCache(View url) {
    return downloadUrlToCache(std::wstring{url});
}
/// @}
