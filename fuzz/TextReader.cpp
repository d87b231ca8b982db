// The text reader's lines, and whether it fails, are those of a reader that decodes the whole input first.
#include "orn/text/TextReader.h"

#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/foundation/Error.h"
#include "orn/text/CodePoint.h"
#include "tests/support/MemoryStreams.h"

#include <memory>
#include <optional>

namespace {

using Bytes = std::string_view;

unsigned int at(Bytes bytes, std::size_t i) { return static_cast<unsigned char>(bytes[i]); }

// Each takes a character off the head; nothing for bytes that are none.
std::optional<unsigned int> takeUTF8(Bytes& bytes) {
    unsigned int const lead = at(bytes, 0);
    std::size_t const length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead >= 0xF8 || length > bytes.size()) return std::nullopt;
    unsigned int value = length == 1 ? lead : lead % (0x100u >> (length + 1));
    for (std::size_t i = 1; i != length; ++i) {
        if (at(bytes, i) > 0xC0) return std::nullopt;
        value = value * 64 + at(bytes, i) % 64;
    }
    bytes.remove_prefix(length);
    return value;
}

std::optional<unsigned int> takeUTF16(Bytes& bytes, std::size_t low) {
    auto const unit = [&](std::size_t i) { return at(bytes, i + low) + 256 * at(bytes, i + 1 - low); };
    if (bytes.size() < 2) return std::nullopt;
    unsigned int value = unit(0);
    std::size_t length = 2;
    if (value >= 0xD800 && value < 0xE000) {
        length = 4;
        if (value >= 0xDC00 || bytes.size() < 4 || unit(2) < 0xDC00 || unit(2) >= 0xE000) return std::nullopt;
        value = 0x10000 + (value - 0xD800) * 0x400 + (unit(2) - 0xDC00);
    }
    bytes.remove_prefix(length);
    return value;
}

std::optional<unsigned int> takeMultibyte(Bytes& bytes) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(4, bytes.size()); ++length)
        if (auto const character = fuzz::converted("UTF-32LE", fuzz::codePage(), bytes.substr(0, length))) {
            bytes.remove_prefix(length);
            return at(*character, 0) + at(*character, 1) * 0x100 + at(*character, 2) * 0x10000;
        }
    return std::nullopt;
}

struct Lines {
    std::vector<std::wstring> lines;
    bool failed = false;
};

Lines read(Bytes bytes, ORN::TextEncoding encoding) {
    Lines result;
    std::wstring line;
    bool begun = false, behindReturn = false;
    auto const end = [&] {
        result.lines.push_back(line);
        line.clear();
        begun = false;
    };
    while (!bytes.empty()) {
        auto const character = encoding == ORN::encUTF8        ? takeUTF8(bytes)
                               : encoding == ORN::encUTF16be   ? takeUTF16(bytes, 1)
                               : encoding == ORN::encMultibyte ? takeMultibyte(bytes)
                                                               : takeUTF16(bytes, 0);
        if (!character || *character >= 0x110000 || isSurrogate(*character)) {
            // A return waits for what comes behind it, and its line with it.
            if (behindReturn) result.lines.pop_back();
            result.failed = true;
            return result;
        }
        bool const pairWithReturn = behindReturn && *character == 0x0A;
        behindReturn = *character == 0x0D;
        if (pairWithReturn) continue;
        switch (*character) {
            case 0x0A:
            case 0x0C:
            case 0x0D:
            case 0x85:
            case 0x2028:
            case 0x2029: end(); break;
            default: fuzz::append(line, *character); begun = true;
        }
    }
    if (begun) end();
    return result;
}

}

ORN_LAW(TextReader) {
    auto const encoding = static_cast<ORN::TextEncoding>(input.option(5));
    if (encoding == ORN::encMultibyte && codePage() == nullptr) return;
    std::size_t const most = input.option(40) + 1;
    std::string const bytes = input.bytes();
    auto const expected = read(bytes, encoding);

    // In a few bytes at a time, and in pieces that fill the reader's buffer.
    for (std::size_t const atOnce : {most, std::string::npos}) {
        MemoryReader raw{bytes, atOnce};
        std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(raw, encoding)};
        Lines actual;
        try {
            for (std::wstring line; reader->readLine(line);) actual.lines.push_back(line);
        } catch (ORN::OrnError const&) {
            actual.failed = true;
        }
        same("lines", actual.lines, expected.lines);
        same("failure", actual.failed, expected.failed);
    }
}
