/// URLs, by the system's own rules: those of the Windows shell, and elsewhere an equal of them.
///
/// A URL ends at its first zero. Results are at most 2083 characters (UTF-16 units) long. What fails throws
/// ORN::OrnError with the URL and the reason. Any number of threads may call these functions.
///
/// Where the systems differ: outside Windows
/// - full names of the system's own files, "/a/b", also become "file:" URLs in cleanupUrl;
/// - "." at the end of a path goes as ".." does, a query is not looked into for dot segments or backslashes, and a
///   path of "/" is put before a query that follows the host, all of which depends on the version of Windows;
/// - the brackets of a numeric host stay, so that it can be downloaded from.
#pragma once

#include "orn/Export.h"

#include <string>

/// Each "%" with two hexadecimal digits is the character of that number, up to U+00FF; any other "%" stays.
ORN_API std::wstring unescapeUrl(std::wstring const& url);

/// Without blanks around it and without dot segments in its path, save those that the path starts with; "\" is "/" in
/// the schemes http, https and file; characters that are unsafe in a path are escaped (blanks, control characters,
/// "<>[\]^`{|}& and U+007F to U+00FF; in a file's name also #). What is escaped stays so. A query and a fragment stay as
/// they are. A name with a drive becomes a "file:" URL.
ORN_API std::wstring canonicalizeUrl(std::wstring const& url);

/// The canonical form, with a scheme for what has none but looks as if it should: "file:" for full names of files,
/// "http://" for what begins with "www", "ftp://" for "ftp". Other texts only become canonical.
ORN_API std::wstring cleanupUrl(std::wstring const& url);

/// Downloads what the URL stands for (http, https, file) into the user's cache, and returns the name of the file. It
/// belongs to the cache: a later download of the same URL may put another in its place, and the user may empty the
/// cache. A download that fails leaves nothing there. It may take as long as data keeps coming.
///
/// Outside Windows the cache is "orn/downloads" in $XDG_CACHE_HOME or ~/.cache. Redirections lead to http and https only.
ORN_API std::wstring downloadUrlToCache(std::wstring const& url);
