// One conversion of any form, between other text and an argument more: numbers are written as the C library writes them,
// texts unit by unit. A conversion that is none makes the format come back.
#include "orn/text/Printf.h"

#include "fuzz/Law.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

std::int64_t const integers[] = {0,           1,       -1,      42,           -5,        255,      8,
                                 65536 + 200, INT_MAX, INT_MIN, 0x1234567890, INT64_MAX, INT64_MIN};
double const numbers[] = {0.0, -0.0, 0.5, 1, 2.5, -1.5, 3.14159, 1e-5, 99999.5, 1e15, 1e300, 1.5e-310, HUGE_VAL, NAN};
wchar_t const wideText[] = {L'w', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xDC00, 0};
char const narrowText[] = "n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x80.";
wchar_t const narrowAsWide[] = {L'n', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xFFFD, L'.', 0};

// What a prefix makes of the types that may follow it.
struct Prefix {
    std::wstring_view text;
    int bits;                     // of an integer
    bool number, character, wide; /* may stand before a double; before a text, which it makes wide */
};
Prefix const prefixes[] = {
    {L"", 32, true, true, false},     {L"l", 32, true, true, true},      {L"h", 16, false, true, false},
    {L"w", 0, false, true, true},     {L"L", 0, true, false, false},     {L"hh", 8, false, false, false},
    {L"ll", 64, false, false, false}, {L"I64", 64, false, false, false}, {L"I32", 32, false, false, false},
    {L"I", 64, false, false, false},  {L"z", 64, false, false, false},   {L"t", 64, false, false, false},
    {L"j", 64, false, false, false},
};

struct Conversion {
    std::string flags, sizes;  // as they are written, the sizes perhaps as stars
    std::vector<int> stars;    // the arguments for them
    int width, digits;         // what they come to; -1 for no number of digits
    Prefix prefix;
    wchar_t type;

    // A width, or behind a point a precision: absent, a number, an argument, or only the point.
    int takeSize(unsigned int form, int value, int absent, char const* point) {
        if (form == 0) return absent;
        sizes += point + (form == 1 ? std::to_string(value) : form == 2 ? "*" : "");
        if (form == 2) stars.push_back(value);
        return form == 3 ? 0 : value;
    }

    bool isAmong(std::wstring_view types) const { return types.find(type) != types.npos; }

    std::wstring format() const {
        std::string const written = flags + sizes;
        return L"<%" + std::wstring{written.begin(), written.end()} + std::wstring{prefix.text} + type + L">%d";
    }

    // The argument with those before it, and one behind it.
    template <typename Value>
    std::wstring formatted(Value value) const {
        fuzz::Exact<wchar_t> const text{format() + L'\0'};
        return stars.size() == 2   ? stringPrintf(text.data(), stars[0], stars[1], value, 7)
               : stars.size() == 1 ? stringPrintf(text.data(), stars[0], value, 7)
                                   : stringPrintf(text.data(), value, 7);
    }

    template <typename Value>
    std::wstring byTheCLibrary(std::string const& conversion, Value value, int precision) const {
        static char text[8000];
        int const length =
            std::snprintf(text, sizeof text, ("%" + flags + "*.*" + conversion).c_str(), width, precision, value);
        return L'<' + std::wstring(text, text + length) + L">7";
    }

    std::wstring padded(std::wstring const& text) const {
        bool const left = width < 0 || flags.find('-') != flags.npos, zero = flags.find('0') != flags.npos;
        std::size_t const size = static_cast<std::size_t>(std::abs(width));
        std::wstring const padding(std::max(size, text.size()) - text.size(), zero && !left ? L'0' : L' ');
        return L'<' + (left ? text + padding : padding + text) + L">7";
    }

    std::wstring cut(std::wstring const& text) const {
        return text.substr(0, static_cast<std::size_t>(digits));  // all of it without a number of digits
    }
};

void checkText(Conversion const& c, bool character, bool wide, bool none, std::int64_t value) {
    if (character) {
        unsigned int const unit = static_cast<unsigned int>(value), byte = unit & 0xFF;
        unsigned int const expected = wide ? unit & 0xFFFF : byte < 0x80 ? byte : 0xFFFD;
        fuzz::same("character", c.formatted(static_cast<int>(value)),
                   c.padded(std::wstring(1, static_cast<wchar_t>(expected))));
    } else if (none) {
        fuzz::same("no text", c.formatted(static_cast<void const*>(nullptr)), c.padded(c.cut(L"(null)")));
    } else if (wide) {
        fuzz::same("wide text", c.formatted(wideText), c.padded(c.cut(wideText)));
    } else {
        std::wstring text = c.cut(narrowAsWide);
        if (!text.empty() && text.back() == wchar_t{0xD83D}) text.pop_back();  // one character of the text is not cut
        fuzz::same("narrow text", c.formatted(narrowText), c.padded(text));
    }
}

}

ORN_LAW(Printf) {
    Conversion c;
    for (char const flag : {'-', '+', ' ', '#', '0', '-'})
        if (input.option(2) == 1) c.flags += flag;
    c.type = L"diouxXeEfFgGaApcCsSny"[input.option(21)];
    c.prefix = prefixes[input.option(4) == 0 ? input.option(std::size(prefixes)) : 0];
    unsigned int const widthForm = input.option(3);
    int width = static_cast<int>(input.option(50)) * (input.option(9) == 0 ? 60 : 1);
    unsigned int const digitsForm = input.option(4);
    int digits = static_cast<int>(input.option(40));
    if (widthForm == 2 && input.option(2) == 1) width *= -1;
    if (digitsForm == 2 && input.option(2) == 1) digits = -1;
    c.width = c.takeSize(widthForm, width, 0, "");
    c.digits = c.takeSize(digitsForm, digits, -1, ".");
    std::int64_t const integer = integers[input.option(std::size(integers))];
    double const number = numbers[input.option(std::size(numbers))];
    char const type = static_cast<char>(c.type);

    if (c.isAmong(L"diouxX") && c.prefix.bits != 0) {
        int const spare = 64 - c.prefix.bits;
        std::uint64_t const high = static_cast<std::uint64_t>(integer) << spare;
        std::int64_t const value =
            c.isAmong(L"di") ? static_cast<std::int64_t>(high) >> spare : static_cast<std::int64_t>(high >> spare);
        same("integer", spare == 0 ? c.formatted(integer) : c.formatted(static_cast<int>(integer)),
             c.byTheCLibrary(std::string{"ll"} + type, value, c.digits));
    } else if (c.isAmong(L"eEfFgGaA") && c.prefix.number) {
        same("number", c.formatted(number), c.byTheCLibrary(std::string(1, type), number, c.digits));
    } else if (c.type == L'p' && c.prefix.text.empty()) {
        same("pointer", c.formatted(reinterpret_cast<void const*>(integer)), c.byTheCLibrary("llX", integer, 16));
    } else if (c.isAmong(L"cCsS") && c.prefix.character) {
        bool const character = c.isAmong(L"cC"), wide = c.prefix.text.empty() ? c.isAmong(L"cs") : c.prefix.wide;
        checkText(c, character, wide, integer == -1, integer);
    } else {
        same("a bad format comes back", c.formatted(1), c.format());
    }
}
