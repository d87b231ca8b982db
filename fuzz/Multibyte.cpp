// The code page both ways: every character is what iconv makes of it by itself, what it does not know is replaced and
// nothing else is, and a buffer takes the longest whole head that fits, or is refused.
#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/foundation/Error.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"

#include <cstring>

namespace {

// Asked anew each time: libFuzzer's programs set their code page after the statics are there.
bool isKnown() { return fuzz::codePage() != nullptr; }
bool isUTF8() { return std::strcmp(fuzz::codePage(), "UTF-8") == 0; }
std::size_t longest() { return isUTF8() ? 4 : 2; }

std::optional<std::string> toUTF16(std::string_view bytes) {
    return fuzz::converted("UTF-16LE", fuzz::codePage(), bytes);
}

// Whether these bytes could be the head of a character; what may follow in UTF-8 changes at multiples of 16 only.
bool beginsCharacter(std::string const& head) {
    if (toUTF16(head)) return true;
    if (head.size() == longest()) return false;
    for (int next = isUTF8() ? 0x80 : 0x30; next < (isUTF8() ? 0xC0 : 0x100); next += isUTF8() ? 0x10 : 1)
        if (beginsCharacter(head + static_cast<char>(next))) return true;
    return false;
}

struct Head {
    std::size_t size;
    std::wstring text;
};

// The first character, or what is replaced as a whole: in UTF-8 as long a head of a character as there is, elsewhere a
// byte, or all that is left when only its end is missing.
Head first(std::string_view bytes) {
    for (std::size_t size = 1; size <= std::min(longest(), bytes.size()); ++size)
        if (auto const units = toUTF16(bytes.substr(0, size))) {
            std::wstring text;
            for (std::size_t i = 0; i != units->size(); i += 2)
                text += static_cast<wchar_t>(static_cast<unsigned char>((*units)[i]) |
                                             static_cast<unsigned char>((*units)[i + 1]) << 8);
            return {size, text};
        }
    std::size_t size = 1;
    if (isUTF8()) {
        while (size < std::min(longest(), bytes.size()) && beginsCharacter(std::string{bytes.substr(0, size + 1)}))
            ++size;
    } else if (bytes.size() < longest() && beginsCharacter(std::string{bytes})) {
        size = bytes.size();
    }
    return {size, L"\xFFFD"};
}

std::wstring read(std::string_view bytes) {
    std::wstring text;
    while (!bytes.empty()) {
        auto const [size, characters] = first(bytes);
        text += characters;
        bytes.remove_prefix(size);
    }
    return text;
}

// Where nobody else knows the code page, a character by itself is what the library makes of it.
std::string write(CodePoint c) {
    if (!isKnown()) return getMBS(c);
    return fuzz::converted(fuzz::codePage(), "UTF-16LE", fuzz::littleEndian(c))
        .value_or(isUTF8() ? "\xEF\xBF\xBD" : "?");
}

}

ORN_LAW(Multibyte) {
    unsigned int const room = input.option(64) + 1;
    std::string const bytes = input.bytes();
    Exact<char> const block{bytes};
    if (isKnown()) same("bytes are read character by character", getWCS(block.data(), block.size()), read(bytes));

    std::wstring const text = input.text();
    Exact<wchar_t> const units{text};
    std::string written, fitting;
    for (CodePointEnumerator e{text}; e; ++e) {
        written += write(*e);
        if (written.size() < room) fitting = written;
    }
    same("text is written character by character", getMBS(units.data(), units.size()), written);

    Exact<char> const buffer{room};
    try {
        same("length of what fits", packTo(text, buffer.data(), static_cast<int>(room)), fitting.size());
        same("what fits", std::string{buffer.data(), fitting.size()}, fitting);
        holds("something fits", !fitting.empty() || text.empty() || room == 1);
    } catch (WinError const&) {
        holds("nothing fits", !text.empty() && fitting.empty());
    }
    same("terminator", buffer.data()[fitting.size()], '\0');
}
