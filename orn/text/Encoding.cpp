#include "orn/text/Encoding.h"

// A first form for ASCII texts, so that the errors can be built on it.
std::string utf8(std::wstring const& text) { return {text.begin(), text.end()}; }
std::wstring utf8(std::string const& text) { return {text.begin(), text.end()}; }
std::wstring getWCS(char const* text) { return utf8(std::string{text}); }
std::wstring getWCS(char const* text, std::size_t length) { return utf8(std::string{text, length}); }
std::wstring getWCS(std::string const& text) { return utf8(text); }
std::string getMBS(wchar_t const* text) { return utf8(std::wstring{text}); }
std::string getMBS(wchar_t const* text, std::size_t length) { return utf8(std::wstring{text, length}); }
std::string getMBS(std::wstring const& text) { return utf8(text); }
