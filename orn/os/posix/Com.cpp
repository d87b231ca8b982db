#include "orn/os/Com.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace ORN::os {

// As on Windows, the length lies in memory before the characters.
BSTR allocString(std::wstring_view text) {
    std::size_t const units = text.size();
    auto* const block = static_cast<std::byte*>(std::malloc(sizeof units + (units + 1) * sizeof(wchar_t)));
    if (block == nullptr) return nullptr;
    std::memcpy(block, &units, sizeof units);
    // The characters are aligned, because malloc's block is, and the length's size is a multiple of a character's.
    auto* const string = reinterpret_cast<BSTR>(block + sizeof units);
    std::wmemcpy(string, text.data(), units);
    string[units] = L'\0';
    return string;
}

std::size_t stringLength(BSTR string) noexcept {
    std::size_t units = 0;
    // A null string is a valid one, of no characters.
    if (string != nullptr) std::memcpy(&units, reinterpret_cast<std::byte*>(string) - sizeof units, sizeof units);
    return units;
}

void freeString(BSTR string) noexcept {
    if (string != nullptr) std::free(reinterpret_cast<std::byte*>(string) - sizeof(std::size_t));
}

}
