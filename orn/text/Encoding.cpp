#include "orn/text/Encoding.h"

#include "orn/foundation/Error.h"
#include "orn/foundation/MultibyteImp.h"
#include "orn/os/CodePage.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Status.h"
#include "orn/unicode/DecodeUtf8.h"
#include "orn/unicode/EncodeUtf8.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

namespace {

// ---- UTF-8

// Converts a text piece by piece, because a piece that is built on the stack and then appended stays in the nearest
// cache. The room for the whole result is estimated from the pieces converted so far, and returned where it was far too
// much.
template <typename To, std::size_t most, std::size_t spill, typename From, typename Convert>
std::basic_string<To> converted(From const* p, std::size_t length, Convert convert) {
    std::ptrdiff_t const step = 1024;
    To piece[most * step + spill];
    From const* const begin = p;
    From const* const end = p + length;
    std::basic_string<To> result;
    while (p != end) {
        auto const filled = static_cast<std::size_t>(convert(p, p + std::min(step, end - p), end, piece) - piece);
        std::size_t const size = result.size() + filled;
        if (result.capacity() < size) {
            double const rest = static_cast<double>(end - p) / static_cast<double>(p - begin);
            // A sixteenth more, in case the rest needs a little more room a unit than the text so far.
            result.reserve(size + static_cast<std::size_t>(1.0625 * rest * static_cast<double>(size)));
        }
        result.append(piece, filled);
    }
    if (result.capacity() / 2 > result.size()) result.shrink_to_fit();
    return result;
}

bool isASCII(unsigned char const* p, std::size_t length) noexcept {
    std::size_t const block = 256;
    unsigned char all = 0;
    // The loop over a block has no exit inside, so that the compiler can take many bytes at once.
    for (; length >= block && all < 0x80; p += block, length -= block)
        for (std::size_t i = 0; i < block; ++i) all |= p[i];
    for (; length > 0 && all < 0x80; ++p, --length) all |= *p;
    return all < 0x80;
}

// ---- The multibyte code page

// A place near the middle of two others where a code point begins; 0 when there is none between them.
int codePointBetween(std::wstring_view text, int first, int last) noexcept {
    int const middle = first + (last - first) / 2;
    auto const unit = [&](int at) { return static_cast<unsigned int>(text[static_cast<std::size_t>(at)]); };
    bool const inPair = middle > first && isSurrogateB(unit(middle)) && isSurrogateA(unit(middle - 1));
    if (!inPair) return middle > first ? middle : 0;
    if (middle - 1 > first) return middle - 1;
    return middle + 1 < last ? middle + 1 : 0;
}

}

std::string utf8(std::wstring const& text) { return utf8(text.data(), text.size()); }
std::wstring utf8(std::string const& text) { return utf8(text.data(), text.size()); }

std::string utf8(wchar_t const* text, std::size_t length) {
    using namespace ORN::utf8encode;
    return converted<char, most, spill>(text, length, encode);
}

// ASCII needs no conversion: the string widens it itself, and writes its memory only once.
std::wstring utf8(char const* text, std::size_t length) {
    using namespace ORN::utf8decode;
    auto const* const bytes = reinterpret_cast<Byte const*>(text);
    if (isASCII(bytes, length)) return {bytes, bytes + length};
    return converted<wchar_t, most, spill>(bytes, length, decode);
}

std::wstring getWCS(char const* text) { return getWCS(text, std::strlen(text)); }
std::wstring getWCS(std::string const& text) { return getWCS(text.data(), text.size()); }

std::wstring getWCS(char const* text, std::size_t length) { return ORN::fromMultibyte({text, length}); }

std::string getMBS(wchar_t const* text) { return getMBS(text, std::char_traits<wchar_t>::length(text)); }
std::string getMBS(std::wstring const& text) { return getMBS(text.data(), text.size()); }

std::string getMBS(wchar_t const* text, std::size_t length) { return ORN::toMultibyte({text, length}); }

unsigned int packTo(std::wstring const& text, char* buffer, int size) {
    return packTo(text.data(), text.size(), buffer, size);
}

unsigned int packTo(wchar_t const* text, std::size_t length, char* buffer, int size) {
    if (size <= 0) throw std::logic_error{"illegal buffer to pack wstring"};
    buffer[0] = '\0';
    int const available = size - 1;
    if (length == 0 || available == 0) return 0;

    // Converts a prefix into the buffer. False when it has no room there.
    unsigned int written = 0;
    auto const fits = [&](int units) {
        int const bytes = ORN::os::wideToMultibyte(text, units, buffer, available);
        DWORD const error = bytes > 0 ? 0 : ORN::os::lastError();
        buffer[bytes] = '\0';
        written = static_cast<unsigned int>(bytes);
        if (bytes == 0 && error != ORN::os::errorInsufficientBuffer)
            throw WinError{L"WideCharToMultiByte in packTo", error};
        return bytes > 0;
    };
    int unfit = ORN::conversionLength(length);
    if (fits(unfit)) return written;

    // A longer prefix never takes fewer bytes, so halving finds the longest one that fits.
    int fit = 0;
    while (int const middle = codePointBetween({text, length}, fit, unfit)) (fits(middle) ? fit : unfit) = middle;
    // The last attempt may have spoilt the buffer. When not even the first code point fits, there are no units to
    // convert: the system refuses that, and the lambda throws its error.
    fits(fit);
    return written;
}
