/// What other libraries make of the same input. A system that lacks one gives nothing, and a law then rests on its other
/// parts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fuzz {

/// The multibyte code page as iconv names it: that of ORN_TEST_CODE_PAGE, or UTF-8. Null where there is no iconv.
char const* codePage();

/// The bytes in another encoding, by iconv. Nothing when some of them cannot be converted, or where there is no iconv.
std::optional<std::string> converted(char const* to, char const* from, std::string_view bytes);

/// The description in an ICC profile, by lcms2, which ends a text at its first zero and refuses more than the library.
std::optional<std::wstring> describedByLcms(std::string const& profile);

/// The base name and the extension of a file name, by the system's own splitter. Nothing where there is none, and for names
/// that it does not take.
std::optional<std::pair<std::wstring, std::wstring>> splitBySystem(std::wstring const& path);

/// A URL as libcurl normalises it; nothing where there is no libcurl.
std::optional<std::string> normalised(std::string const& url);

/// UTF-16 as iconv takes and gives it.
inline std::string littleEndian(std::wstring const& text) {
    std::string result;
    for (wchar_t const unit : text) {
        result += static_cast<char>(unit & 0xFF);
        result += static_cast<char>(unit >> 8);
    }
    return result;
}

}
