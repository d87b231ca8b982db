// The class of every unit in a mixed text, beside two dependent loads.
#include "orn/text/CharacterClass.h"

#include <benchmark/benchmark.h>

#include <iterator>
#include <random>
#include <vector>

namespace {

std::vector<wchar_t> mixedText() {
    std::mt19937 random{5};
    struct {
        unsigned int first, size;
    } const blocks[] = {{0x20, 0x60}, {0x20, 0x60}, {0xA0, 0x160}, {0x370, 0x190}, {0x4E00, 0x5000}, {0xAC00, 0x2B00}};
    std::vector<wchar_t> text(1 << 20);
    for (std::size_t i = 0; i < text.size();) {
        auto const& block = blocks[random() % std::size(blocks)];
        for (unsigned int word = 1 + random() % 12; word > 0 && i < text.size(); --word)
            text[i++] = static_cast<wchar_t>(block.first + random() % block.size);
    }
    return text;
}

void classOfEveryUnit(benchmark::State& state) {
    std::vector<wchar_t> const text = mixedText();
    for (auto _ : state) {
        unsigned int sum = 0;
        for (wchar_t const unit : text) sum += unicodeClass(CodePoint::codePoint(static_cast<unsigned int>(unit)));
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(text.size()));
}
BENCHMARK(classOfEveryUnit);

// The loads, and nothing around them.
void twoDependentLoads(benchmark::State& state) {
    std::vector<wchar_t> const text = mixedText();
    unsigned char const* const* const pages = ORN::characterTable;
    for (auto _ : state) {
        unsigned int sum = 0;
        for (wchar_t const unit : text) {
            auto const value = static_cast<unsigned int>(unit);
            sum += pages[value >> 8][value & 0xFF];
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(text.size()));
}
BENCHMARK(twoDependentLoads);

void isUspaceOfEveryUnit(benchmark::State& state) {
    std::vector<wchar_t> const text = mixedText();
    for (auto _ : state) {
        unsigned int sum = 0;
        for (wchar_t const unit : text) sum += isUspace(CodePoint::codePoint(static_cast<unsigned int>(unit)));
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(text.size()));
}
BENCHMARK(isUspaceOfEveryUnit);

}
