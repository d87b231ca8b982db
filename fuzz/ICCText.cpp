// The text of an ICC element is the one that a reader of checked bytes finds, or is refused with the same words; plain
// text is also the one that lcms2 finds.
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/colour/IccTextImp.h"
#include "orn/text/Encoding.h"
#include "tests/support/IccProfile.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>

namespace {

struct Outcome {
    std::wstring text;
    std::string refusal;
};

Outcome read(std::string const& bytes) {
    Outcome const tooShort{L"", "ICC data too short"};
    std::int64_t const size = static_cast<std::int64_t>(bytes.size());
    auto const number = [&](std::int64_t offset) -> std::int64_t {
        if (offset + 4 > size) return -1;
        std::int64_t value = 0;
        for (std::int64_t i = 0; i != 4; ++i)
            value = value * 256 + static_cast<unsigned char>(bytes[static_cast<std::size_t>(offset + i)]);
        return value;
    };

    if (size < 4) return tooShort;
    if (bytes.starts_with("desc")) {
        std::int64_t const count = number(8);
        if (count < 0 || 12 + count > size) return tooShort;
        return {count == 0 ? L"" : getWCS(bytes.substr(12, static_cast<std::size_t>(count - 1))), ""};
    }
    if (bytes.starts_with("mluc")) {
        if (number(8) < 0) return tooShort;
        if (number(8) == 0) return {};
        std::int64_t const length = number(20), offset = number(24);
        if (length < 0 || offset < 0 || offset + length > size || length % 2 != 0) return tooShort;
        std::wstring text;
        for (std::int64_t i = offset; i != offset + length; i += 2)
            text += static_cast<wchar_t>(static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]) * 256 +
                                         static_cast<unsigned char>(bytes[static_cast<std::size_t>(i + 1)]));
        return {text, ""};
    }
    return {L"", "desc/mluc element not found in ICC data"};
}

bool isPlain(std::wstring const& text) {
    return std::all_of(text.begin(), text.end(), [](wchar_t unit) { return unit > 0 && unit < 0x80; });
}

// lcms2 trusts the records behind the first one, makes room for as many as are said to be there, and rounds odd offsets.
bool isOrdinary(std::string const& element) {
    bool const oneRecord = element.compare(8, 4, std::string{'\0', '\0', '\0', '\1'}) == 0;
    return element.starts_with("desc") || (oneRecord && element[27] % 2 == 0);
}

}

ORN_LAW(ICCText) {
    Exact<char> const block{input.bytes()};
    Outcome actual;
    try {
        actual.text = ORN::IccElement{{reinterpret_cast<unsigned char const*>(block.data()), block.size()}}.text();
    } catch (std::logic_error const& error) {
        actual.refusal = error.what();
    }
    Outcome const expected = read(input.bytes());
    same("refusal", actual.refusal, expected.refusal);
    same("text", actual.text, expected.text);

    if (actual.text.empty() || !isPlain(actual.text) || !isOrdinary(input.bytes())) return;
    if (auto text = describedByLcms(icc::profile({{"desc", input.bytes()}}))) {
        // It keeps the byte that should be the terminating zero.
        if (input.bytes().starts_with("desc")) text->resize(std::min(text->size(), actual.text.size()));
        same("plain text as lcms2 reads it", actual.text, *text);
    }
}
