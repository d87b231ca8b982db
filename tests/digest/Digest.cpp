// One number for the results of each room of geometry, over some millions of them: the same one for every compiler,
// level of optimisation and system. A change of results that is meant changes it, and the program says to what.
#include "tests/digest/Walk.h"

#include <cstdio>

int main() {
    constexpr std::uint64_t expected[] = {0xbb9cea6144991e2e, 0x410bd02e7003e4da, 0x9212376f988f7177,
                                          0x81aad7038604e12a, 0x05d5290119d73c2d};
    static_assert(std::size(expected) == std::size(walk::rooms));
    bool same = true;
    for (std::size_t k = 0; k < std::size(expected); ++k) {
        auto const& [name, results, rounds] = walk::rooms[k];
        walk::Numbers numbers{20};
        walk::Results digest;
        for (int i = 0; i < rounds; ++i) results(numbers, digest);
        if (digest.value() == expected[k]) continue;
        same = false;
        std::printf("The digest of %s is 0x%016llx, not 0x%016llx. Was the change of results meant?\n", name,
                    static_cast<unsigned long long>(digest.value()), static_cast<unsigned long long>(expected[k]));
    }
    return same ? 0 : 1;
}
