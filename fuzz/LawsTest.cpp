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

/// Makes inputs by chance. Numbers come from the generator alone, because distributions differ between systems.
class Changes {
public:
    explicit Changes(std::vector<Seed> const& seeds) : seeds_{seeds} {}

    Seed const& seed() { return seeds_[below(seeds_.size())]; }

    std::string of(std::string bytes) {
        for (std::size_t left = 1 + below(4); left > 0; --left) {
            std::size_t const at = below(bytes.size() + 1),
                              some = below(std::min<std::size_t>(bytes.size() - at, 16) + 1);
            std::string const& other = seed().bytes;
            std::size_t const from = below(other.size() + 1), most = below(256), back = 1 + below(8);
            char const byte = static_cast<char>(below(256));
            switch (below(5)) {
                case 0: bytes.replace(at, some, 1, byte); break;
                case 1: bytes.erase(at, some); break;
                case 2: bytes.insert(at, bytes.substr(at, some)); break;
                case 3: bytes.replace(at, some, other, from, most); break;
                // Laws take their options from the end.
                default: bytes.replace(bytes.size() - std::min(bytes.size(), back), 1, 1, byte);
            }
        }
        return bytes;
    }

private:
    std::size_t below(std::size_t count) { return chance_() % count; }

    std::vector<Seed> const& seeds_;
    std::mt19937 chance_{1};
};

class LawsTest : public testing::TestWithParam<fuzz::Law> {
protected:
    void expect(std::string const& name, std::string const& bytes) const {
        try {
            GetParam().run({reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size()});
        } catch (fuzz::Broken const& broken) {
            FAIL() << broken.text << "\n  input:    " << name << " " << fuzz::shown(bytes);
        } catch (std::exception const& error) {
            FAIL() << error.what() << "\n  input:    " << name << " " << fuzz::shown(bytes);
        }
    }
};

TEST_P(LawsTest, HoldsForItsSeedsAndInputsMadeFromThem) {
    std::vector<Seed> const seeds = seedsOf(GetParam().name);
    ASSERT_FALSE(seeds.empty());
    expect("nothing", "");
    for (Seed const& seed : seeds) expect(seed.name, seed.bytes);
    Changes changes{seeds};
    for (int i = 0; i != 5000 && !HasFailure(); ++i) {
        Seed const& seed = changes.seed();
        expect("made from " + seed.name, changes.of(seed.bytes));
    }
}

INSTANTIATE_TEST_SUITE_P(, LawsTest, testing::ValuesIn(fuzz::Law::all()),
                         [](auto const& law) { return law.param.name; });

}
