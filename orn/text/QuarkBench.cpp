// needs: absl::flat_hash_set absl::hash
#include "orn/text/QuarkTable.cpp"

#include <benchmark/benchmark.h>

#include <absl/container/flat_hash_set.h>
#include <absl/hash/hash.h>
#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// Texts such as layers and styles bear, in no order.
std::vector<std::wstring> const& texts(std::size_t count) {
    static std::map<std::size_t, std::vector<std::wstring>> made;
    std::vector<std::wstring>& all = made[count];
    if (all.empty()) {
        for (std::size_t i = 0; i < count; ++i)
            all.push_back(L"Layer " + std::to_wstring(i * 7919 % count) + L" walls");
        std::ranges::shuffle(all, std::mt19937{1});
    }
    return all;
}

/// The peer: views of texts kept elsewhere, in a flat hash set under the standard library's lock.
class HashSet {
public:
    wchar_t const* intern(wchar_t const* text) {
        std::wstring_view const view{text};
        {
            std::shared_lock const lock{mutex_};
            if (auto const known = set_.find(view); known != set_.end()) return known->data();
        }
        std::unique_lock const lock{mutex_};
        auto const known = set_.find(view);
        return known != set_.end() ? known->data() : set_.insert(texts_.emplace_back(view)).first->data();
    }

private:
    struct Hash {
        std::size_t operator()(std::wstring_view view) const {
            return absl::HashOf(
                std::string_view{reinterpret_cast<char const*>(view.data()), view.size() * sizeof(wchar_t)});
        }
    };

    std::shared_mutex mutex_;
    std::deque<std::wstring> texts_;
    absl::flat_hash_set<std::wstring_view, Hash> set_;
};

/// The ordered tree alone, over texts kept elsewhere.
class BareTree {
public:
    wchar_t const* intern(wchar_t const* text) { return *tree_.insert(text).first; }

private:
    std::set<wchar_t const*, QuarkOrdinalLess> tree_;
};

/// The process's table only grows. Each run has one of its make for itself, compiled in here, as it has each peer.
template <typename Table>
void known(benchmark::State& state) {
    auto const& all = texts(static_cast<std::size_t>(state.range(0)));
    auto const table = std::make_unique<Table>();
    for (std::wstring const& text : all) table->intern(text.c_str());
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(table->intern(all[i].c_str()));
        if (++i == all.size()) i = 0;
    }
}

BENCHMARK(known<QuarkTableImp>)->Name("known/quark")->Arg(100'000)->Arg(1'000'000);
BENCHMARK(known<HashSet>)->Name("known/flat_hash_set")->Arg(100'000)->Arg(1'000'000);

template <typename Table>
void fresh(benchmark::State& state) {
    auto const& all = texts(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        auto table = std::make_unique<Table>();
        for (std::wstring const& text : all) benchmark::DoNotOptimize(table->intern(text.c_str()));
        state.PauseTiming();
        table.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(fresh<QuarkTableImp>)->Name("new/quark")->Arg(100'000)->Arg(1'000'000);
BENCHMARK(fresh<HashSet>)->Name("new/flat_hash_set")->Arg(100'000)->Arg(1'000'000);
BENCHMARK(fresh<BareTree>)->Name("new/tree")->Arg(100'000)->Arg(1'000'000);

}
