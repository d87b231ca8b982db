/// The texts in an ICC profile, from the bytes as they are stored.
#pragma once

#include "orn/os/Types.h"
#include "orn/text/Encoding.h"

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ORN {

/// The number that stands for a tag: its first character in the most significant byte.
inline DWORD iccSignature(std::wstring_view tag) {
    if (tag.size() != 4) throw std::logic_error{"ICC tags are four characters long"};
    DWORD signature = 0;
    for (wchar_t const character : tag) signature = signature << 8 | (static_cast<DWORD>(character) & 0xFF);
    return signature;
}

inline std::wstring iccSignatureText(DWORD signature) {
    std::wstring text(4, L'\0');
    for (int i = 0; i != 4; ++i)
        text[static_cast<std::size_t>(i)] = static_cast<wchar_t>(signature >> (24 - 8 * i) & 0xFF);
    return text;
}

/// One element of a profile. Whatever it says about itself is checked: nothing outside of it is read.
class IccElement {
public:
    explicit IccElement(std::span<unsigned char const> bytes) noexcept : bytes_{bytes} {}

    DWORD number(std::size_t offset) const {
        DWORD value = 0;
        for (unsigned char const byte : part(offset, 4)) value = value << 8 | byte;
        return value;
    }

    /// Of an element of the type textDescriptionType or multiLocalizedUnicodeType; of the latter the first record's text.
    std::wstring text() const {
        switch (number(0)) {
            case 0x64657363: return description();    // "desc"
            case 0x6D6C7563: return localizedText();  // "mluc"
        }
        throw std::logic_error{"desc/mluc element not found in ICC data"};
    }

private:
    std::span<unsigned char const> part(std::size_t offset, std::size_t length) const {
        if (offset > bytes_.size() || length > bytes_.size() - offset) throw std::logic_error{"ICC data too short"};
        return bytes_.subspan(offset, length);
    }

    std::wstring description() const {
        DWORD const count = number(8);  // with a terminating zero
        if (count == 0) return {};
        auto const characters = part(12, count);
        return getWCS(reinterpret_cast<char const*>(characters.data()), count - 1);
    }

    std::wstring localizedText() const {
        if (number(8) == 0) return {};
        DWORD const length = number(20);
        auto const stored = part(number(24), length);
        if (length % 2 != 0) throw std::logic_error{"ICC data too short"};
        std::wstring text(length / 2, L'\0');
        for (std::size_t i = 0; i != text.size(); ++i)
            text[i] = static_cast<wchar_t>(stored[2 * i] << 8 | stored[2 * i + 1]);
        return text;
    }

    std::span<unsigned char const> bytes_;
};

}
