// needs: PkgConfig::icu-uc
// UTF-8 to wide and back beside ICU, which writes into a buffer that is ready; the results here are new strings.
#include "orn/text/CodePoint.h"
#include "orn/text/Encoding.h"

#include <benchmark/benchmark.h>
#include <unicode/ustring.h>

#include <map>
#include <random>
#include <vector>

namespace {

enum Kind { ascii, french, cjk, emoji };

// A megabyte of UTF-8 whose words, and lengths of words, are drawn at random.
std::string makeText(Kind kind) {
    std::mt19937 random{7};
    auto const one = [&random](unsigned int first, unsigned int last) { return first + random() % (last - first + 1); };
    std::wstring const letters = L"eeeeeeaaaaasssssiiiiittttnnnnnrrrruuuulllloooodddccmmppvqfbghjxyz";
    std::wstring const accented =
        L"\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9\u00E8\u00E8\u00E0\u00E0\u00EA\u00E7\u00F4\u0153";
    auto const put = [](std::wstring& text, unsigned int value) { text += std::wstring{CodePoint::codePoint(value)}; };

    std::string result;
    while (result.size() < (1u << 20)) {
        std::wstring sentence;
        for (unsigned int word = one(3, 20); word > 0; --word) {
            for (unsigned int length = one(1, kind == emoji ? 4 : 10); length > 0; --length) {
                switch (kind) {
                    case ascii: sentence += letters[random() % letters.size()]; break;
                    case french:
                        sentence += one(1, 100) <= 5 ? accented[random() % accented.size()]
                                                     : letters[random() % letters.size()];
                        break;
                    case cjk: put(sentence, one(1, 100) <= 8 ? one(0x3041, 0x3093) : one(0x4E00, 0x9FA5)); break;
                    case emoji: put(sentence, one(1, 100) <= 8 ? one(0x2600, 0x26FF) : one(0x1F300, 0x1F64F)); break;
                }
            }
            if (kind == cjk)
                put(sentence, one(1, 10) == 1 ? one('0', '9') : one(0x3001, 0x3002));
            else
                sentence += L' ';
        }
        sentence += kind == cjk ? L"\n" : L". ";
        result += utf8(sentence);
    }
    return result;
}

std::string const& text(Kind kind) {
    static std::map<Kind, std::string> texts;
    std::string& found = texts[kind];
    if (found.empty()) found = makeText(kind);
    return found;
}

void decodeHere(benchmark::State& state, Kind kind) {
    std::string const& bytes = text(kind);
    for (auto _ : state) benchmark::DoNotOptimize(utf8(bytes));
    state.SetBytesProcessed(state.iterations() * static_cast<long>(bytes.size()));
}

void decodeICU(benchmark::State& state, Kind kind) {
    std::string const& bytes = text(kind);
    std::vector<UChar> units(bytes.size());
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strFromUTF8(units.data(), static_cast<int32_t>(units.size()), &length, bytes.data(),
                      static_cast<int32_t>(bytes.size()), &error);
        if (U_FAILURE(error)) state.SkipWithError("u_strFromUTF8");
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(bytes.size()));
}

void encodeHere(benchmark::State& state, Kind kind) {
    std::wstring const wide = utf8(text(kind));
    for (auto _ : state) benchmark::DoNotOptimize(utf8(wide));
    state.SetBytesProcessed(state.iterations() * static_cast<long>(text(kind).size()));
}

void encodeICU(benchmark::State& state, Kind kind) {
    std::wstring const wide = utf8(text(kind));
    std::vector<UChar> const units(wide.begin(), wide.end());
    std::vector<char> bytes(units.size() * 3);
    for (auto _ : state) {
        UErrorCode error = U_ZERO_ERROR;
        int32_t length = 0;
        u_strToUTF8(bytes.data(), static_cast<int32_t>(bytes.size()), &length, units.data(),
                    static_cast<int32_t>(units.size()), &error);
        if (U_FAILURE(error)) state.SkipWithError("u_strToUTF8");
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(text(kind).size()));
}

#define ORN_ALL_KINDS(function)                  \
    BENCHMARK_CAPTURE(function, ascii, ascii);   \
    BENCHMARK_CAPTURE(function, french, french); \
    BENCHMARK_CAPTURE(function, cjk, cjk);       \
    BENCHMARK_CAPTURE(function, emoji, emoji)

ORN_ALL_KINDS(decodeHere);
ORN_ALL_KINDS(decodeICU);
ORN_ALL_KINDS(encodeHere);
ORN_ALL_KINDS(encodeICU);

}
