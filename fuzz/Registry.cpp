// A registry value of any type and bytes is read by every accessor as a reader of those bytes reads it, and fails where
// that fails; a string that was set comes back.
#include "orn/os/Registry.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/text/Encoding.h"
#include "tests/support/TestRegistry.h"

#include <cstdlib>
#include <optional>

#include <unistd.h>

namespace {

// A key, and an environment to expand that has a long, an empty and a strange name in it.
struct Surroundings {
    Surroundings() {
        setenv("S", "short", 1);
        setenv("EMPTY", "", 1);
        setenv("LONG", std::string(200, 'x').c_str(), 1);
        setenv("\xC3\xA9 \xF0\x9F\x98\x80", "%S%\xE2\x82\xAC", 1);
    }
    TestRegistry registry;
    RegWriteKey const key{registry.root(), registry.path()};
};

// The second sign of a name that nothing has begins no other.
std::wstring expanded(std::wstring const& text) {
    std::size_t const first = text.find(L'%');
    std::size_t const second = first == std::wstring::npos ? first : text.find(L'%', first + 1);
    if (second == std::wstring::npos) return text;
    std::wstring reference = text.substr(first, second + 1 - first);
    for (char** variable = environ; *variable != nullptr; ++variable) {
        std::string const both = *variable;
        std::size_t const equals = both.find('=');
        if (reference != L'%' + getWCS(both.substr(0, equals)) + L'%') continue;
        reference = getWCS(both.substr(equals + 1));
        break;
    }
    return text.substr(0, first) + reference + expanded(text.substr(second + 1));
}

// A byte that makes no whole unit is none.
std::wstring units(std::string const& bytes) {
    std::wstring result;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        result +=
            static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) + 256 * static_cast<unsigned char>(bytes[i + 1]));
    return result;
}

std::optional<std::wstring> readString(DWORD type, std::string const& bytes) {
    if (type != 1 && type != 2) return std::nullopt;
    std::wstring text = units(bytes);
    if (!text.empty() && text.back() == L'\0') text.pop_back();
    return type == 1 ? text : expanded(text.substr(0, text.find(L'\0')));
}

std::optional<std::vector<std::wstring>> readStrings(DWORD type, std::string const& bytes) {
    std::wstring const text = units(bytes);
    if (type != 7 || text.empty() || text.back() != L'\0') return std::nullopt;
    std::vector<std::wstring> result{{}};
    for (wchar_t const unit : text) {
        if (unit != L'\0') {
            result.back() += unit;
            continue;
        }
        if (result.back().empty()) break;
        result.emplace_back();
    }
    result.pop_back();
    return result;
}

template <typename Number>
std::optional<Number> readNumber(DWORD wanted, DWORD type, std::string const& bytes) {
    if (type != wanted || bytes.size() > sizeof(Number)) return std::nullopt;
    Number value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

}

ORN_LAW(Registry) {
    static Surroundings const surroundings;
    RegWriteKey const& written = surroundings.key;
    DWORD const types[] = {1, 2, 3, 4, 7, 0, 11, 0xFFFFFFFF};
    DWORD const type = types[input.option(8)];
    Exact<char> const room{input.option(64)};
    Exact<char> const data{input.bytes()};
    std::string const bytes = input.bytes();
    DWORD const status = ORN::os::setValue(written.key(), L"Value", type, data.data(), static_cast<DWORD>(data.size()));
    same("the value is set", status, 0u);

    RegReadKey const key{surroundings.registry.root(), surroundings.registry.path()};
    std::wstring text = L"before";
    auto const expectedText = readString(type, bytes);
    same("is a string", key.getString(L"value", text), expectedText.has_value());
    same("the string", text, expectedText.value_or(L""));

    auto const expectedForm = readString(type == 2 ? 1 : type, bytes);
    same("is a string of either type", key.getUnexpandedString(L"value", text), expectedForm.has_value());
    same("the string as it stands", text, expectedForm.value_or(L""));

    std::vector<std::wstring> texts{L"before"};
    auto const expectedTexts = readStrings(type, bytes);
    same("are strings", key.getMultiString(L"VALUE", texts), expectedTexts.has_value());
    same("the strings", texts, expectedTexts.value_or(std::vector<std::wstring>{}));

    DWORD number = 4711;
    auto const expectedNumber = readNumber<DWORD>(4, type, bytes);
    same("is a number", key.getDword(L"value", number), expectedNumber.has_value());
    same("the number", number, expectedNumber.value_or(4711));

    std::uint64_t longNumber = 4711;
    auto const expectedLong = readNumber<std::uint64_t>(11, type, bytes);
    same("is a long number", key.getQword(L"value", longNumber), expectedLong.has_value());
    same("the long number", longNumber, expectedLong.value_or(4711));

    bool const fits = type == 3 && bytes.size() <= room.size();
    same("bytes read", key.getBinary(L"value", room.data(), static_cast<DWORD>(room.size())), fits ? bytes.size() : 0);
    if (fits) same("the bytes", std::string{room.data(), bytes.size()}, bytes);

    DWORD readType = 0;
    std::vector<BYTE> read(1);
    same("are bytes", key.getBinary(L"value", read), type == 3);
    same("all bytes", std::string(read.begin(), read.end()), type == 3 ? bytes : "");
    holds("any value is read", key.getValue(L"value", readType, read));
    same("its type", readType, type);
    same("its bytes", std::string(read.begin(), read.end()), bytes);

    std::wstring const any = input.text();
    holds("a string is set", written.setString(L"Text", any));
    holds("and read", key.getString(L"text", text));
    same("a string that was set", text, any);
}
