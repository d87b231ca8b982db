// Lines of wide strings, 10,000,000 characters in all, into a file.
#include "orn/text/TextWriter.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <locale>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

enum Kind { ascii, accents, ideographs };

// Lines of 0 to 160 characters; of the accents there is one in eight letters.
std::vector<std::wstring> makeLines(Kind kind) {
    std::mt19937 random{static_cast<unsigned int>(kind)};
    std::vector<std::wstring> lines;
    for (std::size_t size = 0; size < 10'000'000; size += lines.back().size()) {
        lines.emplace_back(random() % 161, L' ');
        for (wchar_t& unit : lines.back()) {
            if (kind == ideographs)
                unit = static_cast<wchar_t>(0x4E00 + random() % 0x5000);
            else if (kind == accents && random() % 8 == 0)
                unit = static_cast<wchar_t>(0xE0 + random() % 30);
            else if (random() % 6 != 0)
                unit = static_cast<wchar_t>('a' + random() % 26);
        }
    }
    return lines;
}

std::vector<std::wstring> const& lines(Kind kind) {
    static std::vector<std::wstring> all[3];
    if (all[kind].empty()) all[kind] = makeLines(kind);
    return all[kind];
}

class Target {
public:
    Target() : path_{std::filesystem::temp_directory_path() / "orn-bench-written.txt"} {}
    ~Target() { std::filesystem::remove(path_); }
    std::string name() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

void textWriter(benchmark::State& state, Kind kind, ORN::TextEncoding encoding) {
    Target const target;
    std::string const name = target.name();
    auto const& text = lines(kind);
    for (auto _ : state) {
        std::unique_ptr<ORN::TextWriter> const writer{
            ORN::TextWriter::create({name.begin(), name.end()}, ORN::textCreate, encoding)};
        for (auto const& line : text) writer->writeLine(line);
        writer->close();
    }
}

void wofstream(benchmark::State& state, Kind kind) {
    Target const target;
    std::string const name = target.name();
    auto const& text = lines(kind);
    std::locale const locale{"C.UTF-8"};
    for (auto _ : state) {
        std::wofstream stream;
        stream.imbue(locale);
        stream.open(name, std::ios::binary);
        for (auto const& line : text) stream << line << L"\r\n";
        stream.close();
    }
}

#define ORN_ALL_ENCODINGS(kind)                                                                              \
    BENCHMARK_CAPTURE(textWriter, kind##_UTF8, kind, ORN::encUTF8)->Unit(benchmark::kMillisecond);           \
    BENCHMARK_CAPTURE(textWriter, kind##_UTF16, kind, ORN::encUTF16)->Unit(benchmark::kMillisecond);         \
    BENCHMARK_CAPTURE(textWriter, kind##_multibyte, kind, ORN::encMultibyte)->Unit(benchmark::kMillisecond); \
    BENCHMARK_CAPTURE(wofstream, kind, kind)->Unit(benchmark::kMillisecond)

ORN_ALL_ENCODINGS(ascii);
ORN_ALL_ENCODINGS(accents);
ORN_ALL_ENCODINGS(ideographs);

}
