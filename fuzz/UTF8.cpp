// UTF-8 both ways. Any bytes are read as the rule says, and any text survives the way there and back. A code point by
// itself fills exactly its room, and a text is its code points one after the other.
#include "fuzz/Law.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"

#include <cstdint>

namespace {

struct Form {
    std::uint64_t end, lead;
};

Form const forms[] = {{0x80, 0},        {0x800, 0xC0},     {0x10000, 0xE0},
                      {0x200000, 0xF0}, {0x4000000, 0xF8}, {0x80000000, 0xFC}};

// Byte by byte in digits of base 64, less what the lead and continuation bits add to the sum. Behind the text stands a zero
// byte, which a character that lacks its last byte takes for it.
std::wstring read(std::string const& bytes) {
    std::wstring result;
    for (std::size_t p = 0; p < bytes.size();) {
        auto const at = [&](std::size_t i) -> std::uint64_t {
            return static_cast<unsigned char>(bytes.c_str()[p + i]);
        };
        std::size_t more = 5;
        while (more > 0 && at(0) < forms[more].lead) --more;
        if (p + more > bytes.size()) return result + wchar_t{0xFFFD};
        std::uint64_t value = at(0) - forms[more].lead;
        for (std::size_t i = 1; i <= more; ++i) value = value * 64 + at(i) - 0x80;
        p += more + 1;
        auto const wrapped = static_cast<std::uint32_t>(value);
        if (wrapped < 0x110000) fuzz::append(result, wrapped);
    }
    return result;
}

std::string write(unsigned int value) {
    std::size_t more = 0;
    for (auto const [end, lead] : forms) {
        if (value < end) {
            std::string bytes(1, static_cast<char>(lead | value >> 6 * more));
            while (more > 0) bytes += static_cast<char>(0x80 | (value >> 6 * --more & 0x3F));
            return bytes;
        }
        ++more;
    }
    return {};
}

}

ORN_LAW(UTF8) {
    std::string const bytes = input.bytes();
    same("UTF-8 is read by the rule", utf8(bytes), read(bytes));

    std::wstring const text = input.text();
    same("any text survives the way back", utf8(utf8(text)), text);

    // An element of 32 bits may hold what is no code unit.
    std::wstring any = text;
    unsigned int const odd[] = {0x10000, 0x1D800, 0x10FFFF, 0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    if (sizeof(wchar_t) == 4 && !any.empty())
        any[input.option(256) * any.size() / 256] = static_cast<wchar_t>(odd[input.option(7)]);

    std::string joined;
    for (CodePointEnumerator e{any}; e; ++e) {
        // Bits that no text has make the longer forms, of up to six bytes.
        unsigned int const shift = input.option(8);
        for (unsigned int const value : {(*e).value(), (*e).value() << shift}) {
            CodePoint const c = CodePoint::codePoint(value);
            std::string const expected = write(value);
            Exact<char> const room{expected.size()};
            same("length of a code point", c.utf8(room.data(), room.size()), expected.size());
            same("bytes of a code point", std::string{room.data(), room.size()}, expected);
            if (!expected.empty()) same("no room", c.utf8(room.data(), room.size() - 1), 0);
        }
        joined += write((*e).value());
    }
    same("a text is its code points one after the other", utf8(any), joined);
}
