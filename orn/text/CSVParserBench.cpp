// needs: csv
// 20 MB of rows in memory, 8 columns, a tenth of the fields in quotes, into vectors of strings and back.
#include "orn/text/CSVReader.h"
#include "orn/text/CSVWriter.h"

#include <benchmark/benchmark.h>

#include <csv.h>

#include <memory>
#include <random>
#include <stdexcept>

namespace {

constexpr std::size_t textSize = 20'000'000;
constexpr std::size_t columns = 8;

std::string const& narrowText() {
    static std::string const text = [] {
        std::mt19937 random{8};
        auto const letters = [&random](unsigned int count) {
            std::string word;
            while (count-- != 0) word += static_cast<char>('a' + random() % 26);
            return word;
        };
        std::string rows;
        while (rows.size() < textSize) {
            for (std::size_t column = 0; column < columns; ++column) {
                if (column != 0) rows += ',';
                if (random() % 10 == 0) {
                    rows +=
                        '"' + letters(random() % 8) + (random() % 2 == 0 ? ", " : "\"\"") + letters(random() % 8) + '"';
                } else if (column % 2 == 0) {
                    rows += std::to_string(static_cast<double>(random()) / 1e6);
                } else {
                    rows += letters(1 + random() % 16);
                }
            }
            rows += '\n';
        }
        return rows;
    }();
    return text;
}

void parse(benchmark::State& state) {
    std::wstring const text{narrowText().begin(), narrowText().end()};
    std::vector<std::wstring> fields;
    std::size_t units = 0;
    for (auto _ : state) {
        std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create()};
        while (parser->parse(fields, text)) {
            if (fields.size() != columns) throw std::logic_error{"a wrong row"};
            units += fields.back().size();
        }
    }
    benchmark::DoNotOptimize(units);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * narrowText().size()));
}

// As many rows as parse reads, from strings to a text. One that is handed on piece by piece stays small; one that is kept
// grows to the end.
void write(benchmark::State& state, std::size_t pieceSize) {
    std::wstring const text{narrowText().begin(), narrowText().end()};
    std::vector<std::vector<std::wstring>> rows(1000);
    ORN::CSVReader reader{text};
    for (auto& row : rows) reader.read(row);
    std::size_t units = 0;
    for (auto _ : state) {
        std::wstring written;
        ORN::CSVWriter writer{written, {}, L"\n"};
        units = 0;
        for (std::size_t n = 0; units + written.size() < text.size(); ++n) {
            writer.write(rows[n % rows.size()]);
            if (written.size() < pieceSize) continue;
            units += written.size();
            written.clear();
        }
        units += written.size();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * units));
}

// The limit of a text that grows: the same units without a question, a row at a time.
void append(benchmark::State& state) {
    std::wstring const text{narrowText().begin(), narrowText().end()};
    for (auto _ : state) {
        std::wstring written;
        for (std::size_t at = 0; at < text.size(); at += 100) written.append(text, at, 100);
        benchmark::DoNotOptimize(written.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

// Rows of strings from libcsv's callbacks, which keep their strings, too.
void libcsv(benchmark::State& state) {
    struct Rows {
        std::vector<std::string> fields;
        std::size_t count = 0, bytes = 0;
    } rows;
    auto const field = [](void* bytes, std::size_t size, void* context) {
        Rows& r = *static_cast<Rows*>(context);
        if (r.count == r.fields.size()) r.fields.emplace_back();
        r.fields[r.count++].assign(static_cast<char const*>(bytes), size);
    };
    auto const row = [](int, void* context) {
        Rows& r = *static_cast<Rows*>(context);
        if (r.count != columns) throw std::logic_error{"a wrong row"};
        r.bytes += r.fields.back().size();
        r.count = 0;
    };
    for (auto _ : state) {
        csv_parser parser;
        csv_init(&parser, 0);
        csv_parse(&parser, narrowText().data(), narrowText().size(), field, row, &rows);
        csv_fini(&parser, field, row, &rows);
        csv_free(&parser);
    }
    benchmark::DoNotOptimize(rows.bytes);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * narrowText().size()));
}

BENCHMARK(parse)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, pieces, 65536)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, grown, 2 * textSize)->Unit(benchmark::kMillisecond);
BENCHMARK(append)->Unit(benchmark::kMillisecond);
BENCHMARK(libcsv)->Unit(benchmark::kMillisecond);

}
