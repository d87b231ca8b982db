#include "orn/foundation/MultibyteImp.h"
#include "orn/os/CodePage.h"
#include "orn/os/Scratch.h"

#include <algorithm>

namespace ORN {

namespace {

/// The room of a scratch buffer, as far as the system's conversions can use it.
template <typename T, std::size_t N>
int roomOf(os::Scratch<T, N> const& scratch) noexcept {
    return static_cast<int>(std::min<std::size_t>(scratch.size(), INT_MAX));
}

}

std::string toMultibyte(std::wstring_view text) {
    if (text.empty()) return {};
    int const units = conversionLength(text.size());
    os::Scratch<char, 128> scratch{text.size() * 5 + 1};  // no unit takes more than five bytes
    int const bytes = os::wideToMultibyte(text.data(), units, scratch.data(), roomOf(scratch));
    return {scratch.data(), static_cast<std::size_t>(bytes)};
}

std::wstring fromMultibyte(std::string_view text) {
    if (text.empty()) return {};
    int const bytes = conversionLength(text.size());
    os::Scratch<wchar_t, 64> scratch{text.size() + 1};
    int const units = os::multibyteToWide(text.data(), bytes, scratch.data(), roomOf(scratch));
    return {scratch.data(), static_cast<std::size_t>(units)};
}

}
