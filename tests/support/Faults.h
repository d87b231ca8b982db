/// Failures on demand for the inner tests: the next calls of the seam, or the k-th allocation, fail.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

namespace faults {

/// While it lives, calls of the seam with this name fail after the first `spared` of them have gone through.
class Refuse {
public:
    explicit Refuse(char const* call, int spared = 0) noexcept;
    ~Refuse();
    Refuse(Refuse const&) = delete;
    Refuse& operator=(Refuse const&) = delete;

    int refusals() const noexcept;  ///< how many calls have failed so far
};

/// While it lives, the allocation of this number (0 is the next one) on this thread throws std::bad_alloc.
class AllocationFails {
public:
    explicit AllocationFails(long number) noexcept;
    ~AllocationFails();
    AllocationFails(AllocationFails const&) = delete;
    AllocationFails& operator=(AllocationFails const&) = delete;

    bool happened() const noexcept;  ///< the allocation was reached, and failed
};

/// Blocks that operator new has given to this thread and operator delete has not had back from it.
long liveBlocks() noexcept;

/// Runs `body` with allocation 0, 1, 2, … failing until it runs through; `body` lets std::bad_alloc escape. Returns how
/// many allocations failed. After each failure `checked` is called, with the allocator whole again.
template <typename Body, typename Checked>
int failEveryAllocation(Body body, Checked checked) {
    for (int number = 0;; ++number) {
        bool failed = false;
        try {
            AllocationFails fails{number};
            body();
            if (!fails.happened()) return number;
        } catch (std::bad_alloc const&) {
            failed = true;
        }
        checked(failed);
    }
}

/// The same, where after each failure as many blocks must be live as before.
template <typename Body>
int failEveryAllocation(Body body) {
    long const before = liveBlocks();
    return failEveryAllocation(body, [before](bool) { EXPECT_EQ(liveBlocks(), before); });
}

}
