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

/// Something that the library does for its caller.
class Action {
public:
    template <std::invocable F>
    Action(F f) : outcome_{[f] { return outcomeOf(f); }}, done_{[f] { return doneBy(f); }} {}

    /// As one text: what it throws (see thrown), or what it returns, as a stream writes it.
    std::wstring outcome() const { return outcome_(); }

    bool done() const {
        return done_();
    }  ///< whether it returns nothing, or something else than false, 0, null or empty

private:
    template <typename F>
    static std::wstring outcomeOf(F const& f) {
        std::wostringstream returned;
        std::wstring const failure = thrown([&] {
            if constexpr (std::is_void_v<decltype(f())>)
                f();
            else
                returned << f();
        });
        return failure == L"nothing" ? returned.str() : failure;
    }
    template <typename F>
    static bool doneBy(F const& f) {
        if constexpr (std::is_void_v<decltype(f())>)
            return f(), true;
        else if constexpr (requires { f().empty(); })
            return !f().empty();
        else
            return f() != 0;
    }

    std::function<std::wstring()> outcome_;
    std::function<bool()> done_;
};

/// A call of the seam that is refused, after some calls that are spared, and the outcome that this has. A `*` in the text
/// stands for any characters.
struct Refusal {
    std::string call;
    std::wstring outcome;
    int spared = 0;
};

/// How an action fails: by refused calls, and, where `fewest` is not negative, by each of its allocations, of which there
/// are at least `fewest` and at most `most`.
struct Case {
    std::string name;
    Action use;
    std::vector<Refusal> refusals;
    int fewest = -1;
    int most = INT_MAX;
};

/// Expects of each case that a refused call has its outcome; that an action without memory throws std::bad_alloc or is not
/// done; that no memory and no open file is left over; and that the action afterwards does again what it did before.
void expectFailures(std::vector<Case> const& table);

}
