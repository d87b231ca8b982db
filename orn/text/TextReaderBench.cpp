// A file of 50 MB by lines into wide strings.
#include "orn/text/TextReader.h"

#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <locale>
#include <memory>
#include <random>

namespace {

constexpr std::size_t fileSize = 50'000'000;

enum Kind { ascii, accents, ideographs };

// Lines of 0 to 160 characters; of the accents there is one in eight letters.
class TextFile {
public:
    explicit TextFile(Kind kind)
        : name_{std::filesystem::temp_directory_path() / ("orn-bench-" + std::to_string(kind) + ".txt")} {
        std::mt19937 random{static_cast<unsigned int>(kind)};
        std::string text = "\xEF\xBB\xBF";
        while (text.size() < fileSize) {
            for (unsigned int length = random() % 161; length != 0; --length) {
                if (kind == ideographs) {
                    text += {static_cast<char>(0xE4 + random() % 5), static_cast<char>(0x80 + random() % 64),
                             static_cast<char>(0x80 + random() % 64)};
                } else if (kind == accents && random() % 8 == 0) {
                    text += {'\xC3', static_cast<char>(0xA0 + random() % 30)};
                } else {
                    text += static_cast<char>(random() % 6 == 0 ? ' ' : 'a' + random() % 26);
                }
            }
            text += '\n';
        }
        std::ofstream{name_, std::ios::binary} << text;
    }
    ~TextFile() { std::filesystem::remove(name_); }

    std::string name() const { return name_.string(); }

private:
    std::filesystem::path name_;
};

TextFile const& file(Kind kind) {
    static std::unique_ptr<TextFile> files[3];
    if (!files[kind]) files[kind] = std::make_unique<TextFile>(kind);
    return *files[kind];
}

void readLine(benchmark::State& state, Kind kind) {
    std::string const name = file(kind).name();
    std::wstring line;
    for (auto _ : state) {
        std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create({name.begin(), name.end()})};
        std::size_t units = 0;
        while (reader->readLine(line)) units += line.size();
        benchmark::DoNotOptimize(units);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fileSize));
}

void wifstream(benchmark::State& state, Kind kind) {
    std::string const name = file(kind).name();
    std::locale const locale{"C.UTF-8"};
    std::wstring line;
    for (auto _ : state) {
        std::wifstream stream;
        stream.imbue(locale);
        stream.open(name, std::ios::binary);
        std::size_t units = 0;
        while (std::getline(stream, line)) units += line.size();
        benchmark::DoNotOptimize(units);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * fileSize));
}

#define ORN_ALL_KINDS(function)                                                   \
    BENCHMARK_CAPTURE(function, ascii, ascii)->Unit(benchmark::kMillisecond);     \
    BENCHMARK_CAPTURE(function, accents, accents)->Unit(benchmark::kMillisecond); \
    BENCHMARK_CAPTURE(function, ideographs, ideographs)->Unit(benchmark::kMillisecond)

ORN_ALL_KINDS(readLine);
ORN_ALL_KINDS(wifstream);

}
