/// Failures on demand for the inner tests: calls of the seam, or the k-th allocation, fail.
#pragma once

#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <climits>
#include <concepts>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

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

/// An action whose outcome is one text: what it throws (see thrown), or what it returns, as a stream writes it.
class Outcome {
public:
    template <std::invocable Action>
    Outcome(Action action)
        : run_{[action] {
              std::wostringstream returned;
              std::wstring const failure = thrown([&] {
                  if constexpr (std::is_void_v<decltype(action())>)
                      action();
                  else
                      returned << action();
              });
              return failure == L"nothing" ? returned.str() : failure;
          }} {}

    std::wstring operator()() const { return run_(); }

private:
    std::function<std::wstring()> run_;
};

/// What an action leads to when a call of the seam is refused, after some calls that are spared. A `*` in the text stands
/// for any characters.
struct Refusal {
    std::string call;
    Outcome use;
    std::wstring leadsTo;
    int spared = 0;
};

/// Expects of each row that the call is refused, that this leads to the text, that no memory and no open file is left
/// over, and that the action then does again what it did before.
void expectRefusals(std::vector<Refusal> const& table);

/// An action that owns memory, and returns true when it has done its work; without memory it returns false or throws
/// std::bad_alloc. It fails as often as it allocates: at least `fewest` and at most `most` times.
struct Owner {
    std::string name;
    std::function<bool()> use;
    int fewest;
    int most = INT_MAX;
};

/// Lets every allocation of each action fail, one after the other. Expects that it never tells of a success then, that no
/// memory and no open file is left over, and that the action does its work when memory is there again.
void expectOwners(std::vector<Owner> const& table);

}
