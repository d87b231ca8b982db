// UTF-16 to UTF-8: any text survives the way there and back, well-formed text is written as the C library does, and a
// code point by itself fills exactly its room.
#include "fuzz/Iconv.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"

namespace {

std::string write(unsigned int value) {
    struct Form {
        unsigned int end, lead;
    };
    std::size_t more = 0;
    for (auto const [end, lead] :
         {Form{0x80, 0}, {0x800, 0xC0}, {0x10000, 0xE0}, {0x200000, 0xF0}, {0x4000000, 0xF8}, {0x80000000, 0xFC}}) {
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

void fuzz::run(Input input) {
    static Iconv const fromUTF16{"UTF-8", "UTF-16LE"};
    std::wstring const text = input.text();
    std::string const bytes = utf8(text);
    same("any text survives the way back", utf8(bytes), text);
    if (auto const expected = fromUTF16(littleEndian(text)))
        same("well-formed text is what iconv writes", bytes, *expected);

    std::string joined;
    for (CodePointEnumerator e{text}; e; ++e) {
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
    same("a text is its code points one after the other", bytes, joined);
}
