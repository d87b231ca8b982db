/// File names and URLs, taken apart and put together. A text that contains "://" is a URL and keeps to forward slashes;
/// anything else is a file name. File names are taken apart by the rules of Windows on every system: a drive is one
/// character before a colon at the start, either slash ends a directory, and an extension starts at the last dot behind
/// it. Parts of any length are kept whole. No function here throws on content (only std::bad_alloc); all may be called
/// from any thread.
#pragma once

#include "orn/Export.h"
#include "orn/text/CodePoint.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

ORN_API bool isURL(std::wstring const& text);  ///< contains "://"

/// Whether the code point may stand in a file name. In ASCII these are letters, numbers, the blank, the grave accent and
/// ``$%'-_~@!(){}^#&+,;=[].``; beyond it everything but unassigned code points, control and format characters,
/// surrogates and private use, save that U+FEFF may.
ORN_API bool isFileChar(CodePoint c) noexcept;

/// The directory, without the separator at its end unless it is the root: `C:\a` of `C:\a\f.txt`, `C:\` of `C:\f.txt`,
/// and also of `C:f.txt`. Empty for a bare name. A network name that has a server and nothing else before the last
/// part, `\\server\f`, is returned whole. Of a URL it is everything up to and including the last slash.
ORN_API std::wstring getDirectory(std::wstring const& path);
ORN_API std::wstring getDirectory(std::wstring const& path, std::wstring& name);  ///< and the name behind the directory

/// And the name in two; the extension begins with its dot, or is empty. The outputs may be the path itself.
ORN_API std::wstring getDirectory(std::wstring const& path, std::wstring& base, std::wstring& extension);

/// Directory, one separator, name. An empty directory, or one that ends in a slash of either kind, needs no separator;
/// for others it is `/` in a URL and `\` in a file name. On systems whose names are parted by `/` a file name gets `/`,
/// too, unless its directory contains a `\` or begins with a drive.
ORN_API std::wstring joinDirectory(std::wstring const& directory, std::wstring const& name);

/// The name from the root on, "." and ".." resolved by the text alone, by the system's own rules for names; the empty
/// name is the current folder. A URL stays as it is. Empty where the system can form no full name: on Windows beyond 260
/// characters, and for a name with a zero inside.
ORN_API std::wstring absoluteFilename(std::wstring const& path);

/// Whether the path may be appended to a directory: it begins with no `\` and contains no `:`. This is no guard against
/// names that lead out of the directory: `..\..\x` and `/etc/x` pass.
ORN_API bool okToAddToAbsolutePath(std::wstring const& path);

/// Which of the extensions, dots included and separated by "/" (".dwg/.dxf"), is the path's: the number of the first
/// that is equal ignoring case by the calling thread's locale, counted from 1, or 0. An empty entry stands for no
/// extension; an empty list has no entries.
ORN_API unsigned int analyzeFileType(std::wstring const& path, std::wstring const& extensions);

/// For display in maxLength characters (UTF-16 units): a longer path becomes a leading part of its directory's
/// directory, as long as fits, "..." and its file name; or the bare file name, however long, when not even "..." fits
/// before it. Surrogate pairs are kept whole.
ORN_API std::wstring abbreviateFilename(std::wstring const& path, std::size_t maxLength);

/// The long form of a name with short parts ("PROGRA~1") of something that exists; any other name, and every name on
/// systems without short names, stays as it is.
ORN_API std::wstring getLongFilename(std::wstring const& path);

/// The same of views, which are copied.
/// @{
template <std::same_as<std::wstring_view> View>
bool isURL(View text) {
    return isURL(std::wstring{text});
}
template <std::same_as<std::wstring_view> View>
std::wstring getDirectory(View path) {
    return getDirectory(std::wstring{path});
}
template <std::same_as<std::wstring_view> View>
std::wstring getDirectory(View path, std::wstring& name) {
    return getDirectory(std::wstring{path}, name);
}
template <std::same_as<std::wstring_view> View>
std::wstring getDirectory(View path, std::wstring& base, std::wstring& extension) {
    return getDirectory(std::wstring{path}, base, extension);
}
template <std::same_as<std::wstring_view> View>
std::wstring joinDirectory(View directory, View name) {
    return joinDirectory(std::wstring{directory}, std::wstring{name});
}
template <std::same_as<std::wstring_view> View>
std::wstring absoluteFilename(View path) {
    return absoluteFilename(std::wstring{path});
}
template <std::same_as<std::wstring_view> View>
bool okToAddToAbsolutePath(View path) {
    return okToAddToAbsolutePath(std::wstring{path});
}
template <std::same_as<std::wstring_view> View>
unsigned int analyzeFileType(View path, View extensions) {
    return analyzeFileType(std::wstring{path}, std::wstring{extensions});
}
template <std::same_as<std::wstring_view> View>
std::wstring abbreviateFilename(View path, std::size_t maxLength) {
    return abbreviateFilename(std::wstring{path}, maxLength);
}
template <std::same_as<std::wstring_view> View>
std::wstring getLongFilename(View path) {
    return getLongFilename(std::wstring{path});
}
/// @}
