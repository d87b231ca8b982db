// One number for the results of each room of geometry, over some millions of them: the same one for every compiler,
// level of optimisation and system. A change of results that is meant changes it, and the program says to what.
#include "tests/digest/Walk.h"

#include <cstdio>

int main() {
    constexpr std::uint64_t expected[] = {0x74a2948d85c049a7, 0x3aefeef009cb2e65, 0x523428a3de3cab3b,
                                          0xc393d4b4d12a58e7, 0x574982b9f1e19e8d};
    static_assert(std::size(expected) == std::size(walk::rooms));
    bool same = true;
    for (std::size_t k = 0; k < std::size(expected); ++k) {
        auto const& [name, results, rounds] = walk::rooms[k];
        walk::Numbers numbers;
        walk::Results digest;
        for (int i = 0; i < rounds; ++i) results(numbers, digest);
        if (digest.value() == expected[k]) continue;
        same = false;
        std::printf("The digest of %s is 0x%016llx, not 0x%016llx. Was the change of results meant?\n", name,
                    static_cast<unsigned long long>(digest.value()), static_cast<unsigned long long>(expected[k]));
    }
    return same ? 0 : 1;
}
