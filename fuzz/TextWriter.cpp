// What the text writer writes is the text's characters and line ends in the encoding, up to the first character that it
// lacks, and the text reader gives the lines back.
#include "orn/text/TextWriter.h"

#include "fuzz/Iconv.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "orn/foundation/Error.h"
#include "orn/text/CodePoint.h"
#include "orn/text/TextReader.h"
#include "tests/support/MemoryStreams.h"

#include <memory>

namespace {

fuzz::Iconv const& converter(ORN::TextEncoding encoding) {
    static fuzz::Iconv const multibyte{ORN_FUZZ_CODE_PAGE, "UTF-16LE"}, toUTF8{"UTF-8", "UTF-16LE"},
        toUTF16le{"UTF-16LE", "UTF-16LE"}, toUTF16be{"UTF-16BE", "UTF-16LE"};
    switch (encoding) {
        case ORN::encMultibyte: return multibyte;
        case ORN::encUTF8: return toUTF8;
        case ORN::encUTF16be: return toUTF16be;
        default: return toUTF16le;
    }
}

}

void fuzz::run(Input input) {
    auto const encoding = static_cast<ORN::TextEncoding>(input.option(5));
    unsigned int const form = input.option(4);
    bool const marked = (form & 1) != 0, feedsAlone = (form & 2) != 0;
    std::size_t const pieces = input.option(8) + 1;
    std::wstring const text = input.text();

    // Pieces that cut neither pairs nor CR LF, which are what they are only within one write.
    std::vector<std::wstring> written{{}};
    std::wstring const lineEnd = feedsAlone ? L"\n" : L"\r\n";
    std::string expected;
    auto const convert = [&](std::wstring const& some) {
        auto const bytes = converter(encoding)(littleEndian(some));
        if (bytes) expected += *bytes;
        return bytes.has_value();
    };
    if (marked && encoding != ORN::encMultibyte) convert(L"\xFEFF");
    bool expectedFailure = false;
    std::vector<std::wstring> lines{{}};
    for (CodePointEnumerator e{text}; e; ++e) {
        std::wstring const character = *e;
        bool const behindReturn = !written.back().empty() && written.back().back() == L'\r' && character == L"\n";
        if (!behindReturn && written.back().size() >= text.size() / pieces + 1) written.emplace_back();
        written.back() += character;
        if (expectedFailure || behindReturn) continue;
        switch (unsigned int const value = (*e).value(); value) {
            case 0x0A:
            case 0x0D:
            case 0x85:
            case 0x2028:
            case 0x2029:
                convert(lineEnd);
                lines.emplace_back();
                break;
            default:
                expectedFailure = !convert(character);
                if (value == 0x0C)
                    lines.emplace_back();
                else if (!expectedFailure)
                    lines.back() += character;
        }
    }
    if (lines.back().empty()) lines.pop_back();

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

    if (marked && encoding != ORN::encMultibyte) {
        if (lines.empty()) lines.emplace_back();
        lines.front().insert(lines.front().begin(), wchar_t{0xFEFF});
    }
    MemoryReader source{raw.bytes};
    std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(source, encoding)};
    std::vector<std::wstring> readBack;
    for (std::wstring line; reader->readLine(line);) readBack.push_back(line);
    same("lines read back", readBack, lines);
}
