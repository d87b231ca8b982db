// Every law over its seeds, and over inputs made from them: the same ones in every run and on every system.
#include "fuzz/Law.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

namespace fuzz {
static void PrintTo(Law const& law, std::ostream* out) { *out << law.name; }
}

namespace {

struct Seed {
    std::string name, bytes;
};

std::vector<Seed> seedsOf(std::string const& law) {
    std::vector<Seed> seeds;
    for (auto const& entry : std::filesystem::directory_iterator{std::filesystem::path{ORN_SEEDS} / law}) {
        std::ifstream stream{entry.path(), std::ios::binary};
        seeds.push_back({entry.path().filename().string(), {std::istreambuf_iterator<char>{stream}, {}}});
    }
    // The system lists files in any order.
    std::sort(seeds.begin(), seeds.end(), [](Seed const& a, Seed const& b) { return a.name < b.name; });
    return seeds;
}

/// Changes inputs by chance. Numbers come from the generator alone, because distributions differ between systems.
class Changes {
public:
    explicit Changes(std::vector<Seed> const& seeds) : seeds_{seeds} {}

    std::size_t below(std::size_t count) { return count == 0 ? 0 : chance_() % count; }

    std::string of(std::string bytes) {
        for (std::size_t left = 1 + below(4); left > 0; --left) change(bytes);
        return bytes;
    }

private:
    char byte() { return static_cast<char>(chance_() & 0xFF); }

    void change(std::string& bytes) {
        std::string const& other = seeds_[below(seeds_.size())].bytes;
        std::size_t const at = below(bytes.size() + 1), some = below(std::min<std::size_t>(bytes.size() - at, 16) + 1);
        switch (below(6)) {
            case 0: bytes.replace(at, some, 1, byte()); break;
            case 1: bytes.erase(at, some); break;
            case 2: bytes.insert(at, bytes.substr(at, some)); break;
            case 3: {
                std::size_t const from = below(other.size());
                bytes.replace(at, some, other, from, below(other.size() - from) + 1);
                break;
            }
            case 4:
                if (!bytes.empty()) bytes[below(bytes.size())] = byte();
                break;
            // Laws take their options from the end.
            default:
                if (!bytes.empty()) bytes[bytes.size() - 1 - below(std::min<std::size_t>(bytes.size(), 8))] = byte();
        }
    }

    std::vector<Seed> const& seeds_;
    std::mt19937 chance_{1};
};

class LawsTest : public testing::TestWithParam<fuzz::Law> {
protected:
    bool holds(std::string const& name, std::string const& bytes) const {
        auto const fails = [&](std::string const& said) {
            ADD_FAILURE() << said << "\n  input:    " << name << " " << fuzz::shown(bytes);
            return false;
        };
        try {
            GetParam().run({reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size()});
            return true;
        } catch (fuzz::Broken const& broken) {
            return fails(broken.text);
        } catch (std::exception const& error) {
            return fails(error.what());
        }
    }
};

TEST_P(LawsTest, HoldsForItsSeedsAndInputsMadeFromThem) {
    std::vector<Seed> const seeds = seedsOf(GetParam().name);
    ASSERT_FALSE(seeds.empty());
    ASSERT_TRUE(holds("nothing", ""));
    for (Seed const& seed : seeds) ASSERT_TRUE(holds(seed.name, seed.bytes));
    Changes changes{seeds};
    for (int i = 0; i != 5000; ++i) {
        Seed const& seed = seeds[changes.below(seeds.size())];
        ASSERT_TRUE(holds("made from " + seed.name, changes.of(seed.bytes)));
    }
}

INSTANTIATE_TEST_SUITE_P(, LawsTest, testing::ValuesIn(fuzz::Law::all()),
                         [](auto const& law) { return law.param.name; });

}
