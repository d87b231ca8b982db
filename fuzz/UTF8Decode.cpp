// UTF-8 to UTF-16: any bytes as the rule reads them, well-formed ones as the C library does, and those survive the way
// back.
#include "fuzz/Iconv.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/text/Encoding.h"

#include <cstdint>

namespace {

// Byte by byte in digits of base 64, less what the lead and continuation bits add to the sum.
std::wstring read(std::string const& bytes) {
    std::wstring result;
    for (std::size_t p = 0; p < bytes.size();) {
        auto const at = [&](std::size_t i) -> std::uint64_t {
            return p + i < bytes.size() ? static_cast<unsigned char>(bytes[p + i]) : 0;
        };
        std::size_t more = 0;
        std::uint64_t leadBits = 0;
        for (std::uint64_t const lead : {0xC0, 0xE0, 0xF0, 0xF8, 0xFC})
            if (at(0) >= lead) {
                ++more;
                leadBits = lead;
            }
        if (p + more > bytes.size()) return result + wchar_t{0xFFFD};
        std::uint64_t value = at(0) - leadBits;
        for (std::size_t i = 1; i <= more; ++i) value = value * 64 + at(i) - 0x80;
        p += more + 1;
        auto const wrapped = static_cast<std::uint32_t>(value);
        if (wrapped < 0x110000) fuzz::append(result, wrapped);
    }
    return result;
}

}

void fuzz::run(Input input) {
    static Iconv const toUTF16{"UTF-16LE", "UTF-8"};
    std::string const bytes = input.bytes();
    std::wstring const text = utf8(bytes);
    same("UTF-8 is read by the rule", text, read(bytes));
    if (auto const expected = toUTF16(bytes)) {
        same("well-formed UTF-8 is what iconv reads", littleEndian(text), *expected);
        same("well-formed UTF-8 survives the way back", utf8(text), bytes);
    }
}
