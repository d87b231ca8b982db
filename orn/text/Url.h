/// URLs by the rules of the Windows shell. On Windows the system applies them, elsewhere this library does.
///
/// A URL ends at its first zero. Results have at most 2083 characters (UTF-16 units). A failure throws ORN::OrnError
/// with the URL and the reason. Any number of threads may call these functions.
///
/// Outside Windows some details are fixed where the versions of Windows differ, or where no URL would reach a file:
/// - "." at the end of a path is removed as ".." is; where there are more ".." than segments, all of them stay;
/// - dot segments of names with a drive are removed, and canonicalizeUrl also makes "file:" URLs of network names;
/// - a query keeps its backslashes and dots, and "/" is put between a bare host and its query;
/// - the brackets of a numeric host stay;
/// - cleanupUrl also makes a "file:" URL of a full name in the system's own form, "/a/b", by the bytes of the name.
#pragma once

#include "orn/Export.h"

#include <concepts>
#include <string>
#include <string_view>

/// Replaces each `%` with two hexadecimal digits by the character of that number, up to U+00FF; any other `%` stays.
/// The result may contain what the URL hid: `%00` is a zero, at which a name ends for the system, and `%2F` is a slash.
ORN_API std::wstring unescapeUrl(std::wstring const& url);

/// The canonical form. It has no blanks around it, and no dot segments in its path but those at the beginning. In the
/// schemes http, https and file a backslash becomes a slash. Characters that are unsafe in a path are escaped: blanks,
/// control characters, quote, backslash, grave accent, `<>[]^{|}&` and U+007F to U+00FF. In file URLs `#` is escaped,
/// too, and so is the slash of URLs without a slash behind the scheme, as in "mailto:". Escapes, queries and fragments
/// stay as they are. A name with a drive becomes a "file:" URL.
ORN_API std::wstring canonicalizeUrl(std::wstring const& url);

/// The canonical form, with a scheme for texts that lack one: "file:" for full names of files, "http://" for texts that
/// begin with "www", "home" or "mosaic", "ftp://" for "ftp", "gopher://" for "gopher", in upper or lower case. On
/// Windows the list is the system's own and may differ. Only the beginning counts: "homework.txt" becomes
/// "http://homework.txt/". Other texts only become canonical.
ORN_API std::wstring cleanupUrl(std::wstring const& url);

/// Downloads the URL's content into the user's cache, and returns the name of the file. The file belongs to the cache:
/// a later download of the same URL may replace it, and the user may empty the cache. A failed download leaves no file.
/// Only the schemes http, https and file are allowed; the system never sees another. Note that the system may log on to
/// the host that a file URL names. The calling thread needs no COM apartment.
///
/// Outside Windows the cache is "orn/downloads" in $XDG_CACHE_HOME or ~/.cache, and redirections may lead to http and
/// https alone. A download fails when it gets less than 1,000 bytes a second for a minute, or takes longer than an
/// hour. On Windows it may take as long as data keeps coming.
ORN_API std::wstring downloadUrlToCache(std::wstring const& url);

/// The same for views, which these functions copy.
/// @{
std::wstring unescapeUrl(std::same_as<std::wstring_view> auto url) { return unescapeUrl(std::wstring{url}); }
std::wstring canonicalizeUrl(std::same_as<std::wstring_view> auto url) { return canonicalizeUrl(std::wstring{url}); }
std::wstring cleanupUrl(std::same_as<std::wstring_view> auto url) { return cleanupUrl(std::wstring{url}); }
std::wstring downloadUrlToCache(std::same_as<std::wstring_view> auto url) {
    return downloadUrlToCache(std::wstring{url});
}
/// @}
