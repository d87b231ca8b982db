// What the text writer writes is the text's characters and line ends in the encoding, up to the first character that it
// lacks.
#include "orn/text/TextWriter.h"

#include "fuzz/Law.h"
#include "fuzz/Oracles.h"
#include "orn/foundation/Error.h"
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"
#include "tests/support/MemoryStreams.h"

#include <memory>

namespace {

// Nothing for a character that the encoding lacks.
std::optional<std::string> encoded(std::wstring const& character, ORN::TextEncoding encoding) {
    if (encoding == ORN::encMultibyte)
        return fuzz::converted(fuzz::codePage(), "UTF-16LE", fuzz::littleEndian(character));
    if (character.size() == 1 && isSurrogate(static_cast<unsigned int>(character[0]))) return std::nullopt;
    if (encoding == ORN::encUTF8) return utf8(character);
    std::string bytes = fuzz::littleEndian(character);
    if (encoding == ORN::encUTF16be)
        for (std::size_t i = 0; i != bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
    return bytes;
}

}

ORN_LAW(TextWriter) {
    auto const encoding = static_cast<ORN::TextEncoding>(input.option(5));
    if (encoding == ORN::encMultibyte && codePage() == nullptr) return;
    unsigned int const form = input.option(4);
    bool const marked = (form & 1) != 0, feedsAlone = (form & 2) != 0;
    std::size_t const pieces = input.option(8) + 1;
    std::wstring const text = input.text();

    // Pieces that cut neither pairs nor CR LF, which are what they are only within one write.
    std::vector<std::wstring> written{{}};
    std::wstring const lineEnd = feedsAlone ? L"\n" : L"\r\n";
    std::string expected;
    auto const convert = [&](std::wstring const& some) {
        auto const bytes = encoded(some, encoding);
        if (bytes) expected += *bytes;
        return bytes.has_value();
    };
    if (marked && encoding != ORN::encMultibyte) convert(L"\xFEFF");
    bool expectedFailure = false;
    for (CodePointEnumerator e{text}; e; ++e) {
        std::wstring const character = *e;
        bool const behindReturn = !written.back().empty() && written.back().back() == L'\r' && character == L"\n";
        if (!behindReturn && written.back().size() >= text.size() / pieces + 1) written.emplace_back();
        written.back() += character;
        if (expectedFailure || behindReturn) continue;
        bool const ends = (*e).eolCode() != CodePoint::eolNone && character != L"\f";
        expectedFailure = !convert(ends ? lineEnd : character);
    }

    MemoryWriter raw;
    bool failed = false;
    std::unique_ptr<ORN::TextWriter> writer{
        ORN::TextWriter::create(raw, encoding, marked, feedsAlone ? ORN::lineEndLF : ORN::lineEndCRLF)};
    try {
        for (auto const& piece : written) writer->write(piece);
        writer->flush();
    } catch (ORN::OrnError const&) {
        failed = true;
    }
    writer.reset();
    same("failure", failed, expectedFailure);
    same("bytes", raw.bytes, expected);
}
