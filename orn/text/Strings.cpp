#include "orn/text/Strings.h"

#include "orn/os/Locale.h"
#include "orn/os/Scratch.h"
#include "orn/text/CharacterClass.h"
#include "orn/text/CodePoint.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <stdexcept>

namespace os = ORN::os;

namespace {

// The result ends at the first zero, because the system takes a terminated text.
std::wstring converted(std::wstring const& text, void (*convert)(wchar_t*) noexcept) {
    os::Scratch<wchar_t, 64> scratch{text.size() + 1};
    std::wmemcpy(scratch.data(), text.c_str(), text.size() + 1);
    convert(scratch.data());
    return scratch.data();
}

}

std::wstring uppercase(std::wstring const& text) { return converted(text, os::upperCase); }
std::wstring lowercase(std::wstring const& text) { return converted(text, os::lowerCase); }

std::wstring simpleLowercase(std::wstring const& text) {
    std::wstring result = text;
    for (wchar_t& unit : result) unit = simpleLowercase(unit);
    return result;
}

int collateStrings(std::wstring const& a, std::wstring const& b) noexcept {
    return collateStrings(a.c_str(), b.c_str());
}

// The system tells a failed comparison only by errno. Texts that cannot be compared count as equal.
int collateStrings(wchar_t const* a, wchar_t const* b) noexcept {
    errno = 0;
    int const order = os::collate(a, b);
    return errno != 0 ? 0 : order;
}

std::wstring trimwhitespace(std::wstring const& text) { return trimwhitespace(text.data(), text.size()); }

std::wstring trimwhitespace(wchar_t const* text, std::size_t length) {
    // Every space is a single unit, and no surrogate is a space, so units can be tested as if they were code points.
    auto const isSpace = [](wchar_t unit) { return isUspace(CodePoint::codePoint(static_cast<unsigned int>(unit))); };
    wchar_t const* const first = std::find_if_not(text, text + length, isSpace);
    wchar_t const* last = text + length;
    while (last != first && isSpace(last[-1])) --last;
    return {first, last};
}

std::size_t packTo(std::wstring const& text, wchar_t* buffer, std::size_t size) {
    return packTo(text.data(), text.size(), buffer, size);
}

std::size_t packTo(wchar_t const* text, std::size_t length, wchar_t* buffer, std::size_t size) {
    if (size == 0) throw std::logic_error{"illegal buffer to pack wstring"};
    // What is looked at is the first unit that is cut off: where it leads a pair, one unit less is copied.
    std::size_t room = size;
    if (size > 1 && size - 1 < length && isSurrogateA(static_cast<unsigned int>(text[size - 1]))) --room;
    std::size_t const count = std::min(room - 1, length);
    std::wmemcpy(buffer, text, count);
    buffer[count] = 0;
    return count;
}
