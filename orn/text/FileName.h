/// These functions take file names and URLs apart and put them together. A text that contains "://" is a URL and has
/// forward slashes; any other text is a file name. The rules for file names are those of Windows on every system: a
/// drive is one character before a colon at the start, either slash ends a directory, and an extension starts at the
/// last dot behind it. Parts may have any length. Functions throw only std::bad_alloc, whatever the texts hold. Any
/// thread may call them.
#pragma once

#include "orn/Export.h"
#include "orn/text/CodePoint.h"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

ORN_API bool isURL(std::wstring const& text);  ///< contains "://"

/// Whether the code point may stand in a file name. In ASCII these are letters, numbers, the blank, the grave accent
/// and ``$%'-_~@!(){}^#&+,;=[].``; beyond it everything but unassigned code points, control and format characters,
/// surrogates and private use, save that U+FEFF may.
ORN_API bool isFileChar(CodePoint c) noexcept;

/// The directory of a path. It ends without a separator, unless it is the root: `C:\a` for `C:\a\f.txt`, `C:\` for
/// `C:\f.txt` and also for `C:f.txt`. A bare name has an empty one. A network name that has nothing but a server before
/// its last part, `\\server\f`, is its own directory. The directory of a URL ends with its last slash.
ORN_API std::wstring getDirectory(std::wstring const& path);
ORN_API std::wstring getDirectory(std::wstring const& path, std::wstring& name);  ///< also gives the name behind it

/// Also gives the two parts of the name. The extension begins with its dot, or is empty. The outputs may be the path
/// itself.
ORN_API std::wstring getDirectory(std::wstring const& path, std::wstring& base, std::wstring& extension);

/// The directory, one separator, and the name. After an empty directory, or one that ends with a slash of either kind,
/// no separator is added. Otherwise it is `/` in a URL and `\` in a file name. On systems that separate names by `/` a
/// file name gets `/`, too, unless its directory contains a `\` or begins with a drive.
ORN_API std::wstring joinDirectory(std::wstring const& directory, std::wstring const& name);

/// The full name, from the root on, by the system's rules for names. "." and ".." are resolved in the text alone, and
/// the empty name is the current folder. A URL stays as it is. The result is empty where the system can form no full
/// name: on Windows beyond 260 characters, and for a name that contains a zero.
ORN_API std::wstring absoluteFilename(std::wstring const& path);

/// Whether the path may be appended to a directory: it begins with no `\` and contains no `:`. This is no guard against
/// names that lead out of the directory: `..\..\x` and `/etc/x` pass.
ORN_API bool okToAddToAbsolutePath(std::wstring const& path);

/// Finds the path's extension in a list such as ".dwg/.dxf": the number of the first equal entry, counted from 1, or 0
/// when there is none. Case does not count, by the calling thread's locale. An empty entry stands for no extension; an
/// empty list has no entries.
ORN_API unsigned int analyzeFileType(std::wstring const& path, std::wstring const& extensions);

/// Shortens a path for display to maxLength characters (UTF-16 units). A longer path becomes a beginning of its
/// directory's directory, as long as fits, then "..." and its file name. Where not even "..." fits before the file
/// name, the result is the bare file name, however long. Surrogate pairs stay whole.
ORN_API std::wstring abbreviateFilename(std::wstring const& path, std::size_t maxLength);

/// The long form of a name with short parts ("PROGRA~1"), if a file of that name exists. Any other name stays as it is,
/// and so does every name on systems without short names.
ORN_API std::wstring getLongFilename(std::wstring const& path);

/// The same for views, which these functions copy.
/// @{
bool isURL(std::same_as<std::wstring_view> auto text) { return isURL(std::wstring{text}); }
std::wstring getDirectory(std::same_as<std::wstring_view> auto path) { return getDirectory(std::wstring{path}); }
std::wstring getDirectory(std::same_as<std::wstring_view> auto path, std::wstring& name) {
    return getDirectory(std::wstring{path}, name);
}
std::wstring getDirectory(std::same_as<std::wstring_view> auto path, std::wstring& base, std::wstring& extension) {
    return getDirectory(std::wstring{path}, base, extension);
}
template <std::same_as<std::wstring_view> View>
std::wstring joinDirectory(View directory, View name) {
    return joinDirectory(std::wstring{directory}, std::wstring{name});
}
std::wstring absoluteFilename(std::same_as<std::wstring_view> auto path) {
    return absoluteFilename(std::wstring{path});
}
bool okToAddToAbsolutePath(std::same_as<std::wstring_view> auto path) {
    return okToAddToAbsolutePath(std::wstring{path});
}
template <std::same_as<std::wstring_view> View>
unsigned int analyzeFileType(View path, View extensions) {
    return analyzeFileType(std::wstring{path}, std::wstring{extensions});
}
std::wstring abbreviateFilename(std::same_as<std::wstring_view> auto path, std::size_t maxLength) {
    return abbreviateFilename(std::wstring{path}, maxLength);
}
std::wstring getLongFilename(std::same_as<std::wstring_view> auto path) { return getLongFilename(std::wstring{path}); }
/// @}
