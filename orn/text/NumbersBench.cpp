#include "orn/text/Numbers.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

/// Numbers as files have them, more of them than a branch predictor can learn: whole numbers, coordinates, all digits of
/// a double, and exponents of every size.
class Texts {
public:
    Texts() {
        std::mt19937_64 random{20};
        std::uniform_real_distribution<double> unit{-1, 1};
        for (std::size_t n = 0; n < 50000; ++n) {
            int const detail = static_cast<int>(random() % 17);
            double const value = unit(random);
            char buffer[64];
            switch (random() % 4) {
                case 0:
                    std::snprintf(buffer, sizeof buffer, "%d", static_cast<int>(random() >> (33 + random() % 30)));
                    break;
                case 1: std::snprintf(buffer, sizeof buffer, "%.*f", 1 + detail % 6, value * 10000); break;
                case 2: std::snprintf(buffer, sizeof buffer, "%.17g", value * 1000); break;
                default:
                    std::snprintf(buffer, sizeof buffer, "%.*fe%d", detail, value * 10,
                                  static_cast<int>(random() % 600) - 300);
            }
            starts_.push_back(narrow_.size());
            narrow_ += buffer;
            narrow_ += '\0';
        }
        starts_.push_back(narrow_.size());
        wide_.assign(narrow_.begin(), narrow_.end());
    }

    std::size_t count() const { return starts_.size() - 1; }
    std::size_t length(std::size_t n) const { return starts_[n + 1] - starts_[n] - 1; }
    char const* narrow(std::size_t n) const { return narrow_.data() + starts_[n]; }
    wchar_t const* wide(std::size_t n) const { return wide_.data() + starts_[n]; }

private:
    std::string narrow_;
    std::wstring wide_;
    std::vector<std::size_t> starts_;
};

template <typename Read>
void readAll(benchmark::State& state, Read read) {
    static Texts const texts;
    for (auto _ : state) {
        double sum = 0;
        for (std::size_t n = 0; n < texts.count(); ++n) {
            double value = 0;
            read(texts, n, value);
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(texts.count()));
}

void ofIsDouble(benchmark::State& state) {
    readAll(state, [](Texts const& texts, std::size_t n, double& value) {
        static_cast<void>(isDouble(&value, texts.wide(n), texts.length(n)));
    });
}

void ofReadDouble(benchmark::State& state) {
    readAll(state, [](Texts const& texts, std::size_t n, double& value) {
        value = ORN::readDouble({texts.wide(n), texts.length(n)}).value;
    });
}

void ofWriteDouble(benchmark::State& state) {
    readAll(state, [](Texts const& texts, std::size_t n, double& value) {
        static std::vector<double> const values = [&] {
            std::vector<double> all;
            for (std::size_t i = 0; i < texts.count(); ++i)
                all.push_back(ORN::readDouble({texts.wide(i), texts.length(i)}).value);
            return all;
        }();
        wchar_t room[ORN::doubleRoom];
        value = ORN::writeDouble(room, values[n]).front();
    });
}

void ofWcstod(benchmark::State& state) {
    readAll(state, [](Texts const& texts, std::size_t n, double& value) {
        wchar_t* end;
        value = std::wcstod(texts.wide(n), &end);
    });
}

void ofFromChars(benchmark::State& state) {
    readAll(state, [](Texts const& texts, std::size_t n, double& value) {
        std::from_chars(texts.narrow(n), texts.narrow(n) + texts.length(n), value);
    });
}

BENCHMARK(ofIsDouble)->Name("isDouble");
BENCHMARK(ofWcstod)->Name("std::wcstod");
BENCHMARK(ofReadDouble)->Name("readDouble");
BENCHMARK(ofWriteDouble)->Name("writeDouble");
BENCHMARK(ofFromChars)->Name("std::from_chars, narrow");

}
