/// Runs the steps of a concurrent algorithm in an order that the test chooses, on one thread of the system.
///
/// The algorithm does everything that other threads can see through Machine::step and Machine::await. A thread of the
/// machine advances by one step at a time: its body is run anew from the start, steps it has done before give their
/// recorded results, the next one is carried out, and at the one after that the body is left by an exception. So a body
/// and the algorithm must be deterministic, must change what they share in steps only, and must let exceptions through.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace schedules {

class Machine {
public:
    static constexpr std::uint64_t timedOut = 258;

    /// Picks one of `count` ways to go on, 0 to count - 1.
    using Chooser = std::function<std::size_t(std::size_t count)>;

    enum class End { done, halted, stuck, endless };

    void add(std::function<void()> body) { threads_.emplace_back().body = std::move(body); }

    /// The thread stands still for good after so many steps.
    void halt(std::size_t thread, int steps) { threads_[thread].left = steps; }

    /// Limits the schedules to those in which at most so often another thread goes first though the last one could go on,
    /// or a thread gives up though one could go on. Few faults of concurrent algorithms need more than two such turns, and
    /// so limited far longer algorithms can be walked in every order.
    void limitTurns(int most) { turns_ = most; }

    /// `halted`: all have ended but one that stands still. `stuck`: some have not ended and none can go on. `endless`:
    /// 2,000 steps were not enough.
    End run(Chooser const& choose) {
        current = this;
        for (std::size_t thread = 0; thread < threads_.size(); ++thread) advance(thread, 0);
        End const end = steps(choose);
        current = nullptr;
        return end;
    }

    std::size_t self() const noexcept { return running_; }

    /// One step of the running thread. Where no machine runs, the operation is simply done.
    template <typename Operation>
    static std::uint64_t step(Operation operation) {
        return await({}, false, operation);
    }

    /// A step that can be done only when `ready`; where `timed`, it can give up instead and is then `timedOut`. `ready` is
    /// asked after the body was left, so it must own what it looks at or name what outlives the body.
    template <typename Operation>
    static std::uint64_t await(std::function<bool()> ready, bool timed, Operation operation) {
        auto const result = [&] { return static_cast<std::uint64_t>(operation()); };
        return current != nullptr ? current->perform(std::move(ready), timed, result) : result();
    }

    static inline constinit Machine* current = nullptr;

private:
    struct Left {};
    struct Thread {
        std::function<void()> body;
        std::vector<std::uint64_t> results;
        bool done = false;
        std::function<bool()> ready;
        bool timed = false;
        int left = -1;  // steps until it stands still; negative: never
    };
    struct Way {
        std::size_t thread;
        bool givesUp;
    };

    End steps(Chooser const& choose) {
        for (int done = 0; done < 2000; ++done) {
            std::vector<Way> ways;
            End end = End::done;
            bool anyGoesOn = false, lastGoesOn = false;
            for (std::size_t thread = 0; thread < threads_.size(); ++thread) {
                Thread const& one = threads_[thread];
                if (one.done) continue;
                end = std::max(end, one.left == 0 ? End::halted : End::stuck);
                if (one.left == 0) continue;
                bool const goesOn = !one.ready || one.ready();
                anyGoesOn |= goesOn;
                lastGoesOn |= goesOn && thread == running_;
                if (goesOn) ways.push_back({thread, false});
                if (one.timed) ways.push_back({thread, true});
            }
            if (ways.empty()) return end;
            auto const isTurn = [&, last = running_](Way way) {
                return way.givesUp ? anyGoesOn : lastGoesOn && way.thread != last;
            };
            if (turns_ == 0) std::erase_if(ways, isTurn);
            Way const way = ways[ways.size() == 1 ? 0 : choose(ways.size())];
            if (isTurn(way)) --turns_;
            givesUp_ = way.givesUp;
            if (threads_[way.thread].left > 0) --threads_[way.thread].left;
            advance(way.thread, 1);
        }
        return End::endless;
    }

    void advance(std::size_t thread, int steps) {
        running_ = thread;
        recalled_ = 0;
        allowed_ = steps;
        try {
            threads_[thread].body();
            threads_[thread].done = true;
        } catch (Left const&) {}
    }

    template <typename Operation>
    std::uint64_t perform(std::function<bool()> ready, bool timed, Operation operation) {
        Thread& thread = threads_[running_];
        if (recalled_ < thread.results.size()) return thread.results[recalled_++];
        if (allowed_-- == 0) {
            thread.ready = std::move(ready);
            thread.timed = timed;
            throw Left{};
        }
        thread.results.push_back(givesUp_ ? timedOut : operation());
        return thread.results[recalled_++];
    }

    std::vector<Thread> threads_;
    std::size_t running_ = 0;
    std::size_t recalled_ = 0;
    int allowed_ = 0;
    bool givesUp_ = false;
    int turns_ = -1;  // negative: any number
};

/// Calls `run` with a chooser for every schedule in turn: the depth-first walk of the tree of choices. Ends early when `run`
/// returns false. Returns how many schedules there were.
template <typename Run>
long forEverySchedule(Run run) {
    struct Choice {
        std::size_t taken, count;
    };
    std::vector<Choice> path;
    for (long schedules = 1;; ++schedules) {
        std::size_t depth = 0;
        Machine::Chooser const choose = [&](std::size_t count) {
            if (depth == path.size()) path.push_back({0, count});
            return path[depth++].taken;
        };
        if (!run(choose)) return schedules;
        while (!path.empty() && path.back().taken + 1 == path.back().count) path.pop_back();
        if (path.empty()) return schedules;
        ++path.back().taken;
    }
}

/// An atomic word whose every use is a step.
template <typename T>
class Atomic {
public:
    constexpr explicit Atomic(T value) noexcept : value_{value} {}

    T load() const {
        return static_cast<T>(Machine::step([this] { return value_; }));
    }
    T fetch_add(T term) {
        return change([term](T value) { return value + term; });
    }
    T fetch_sub(T term) {
        return change([term](T value) { return value - term; });
    }
    T exchange(T next) {
        return change([next](T) { return next; });
    }
    bool compare_exchange_strong(T& expected, T next) {
        T const seen = change([=](T value) { return value == expected ? next : value; });
        return std::exchange(expected, seen) == seen;
    }

    T now() const noexcept { return value_; }  ///< within another step

private:
    template <typename Next>
    T change(Next next) {
        return static_cast<T>(Machine::step([&] { return std::exchange(value_, static_cast<T>(next(value_))); }));
    }

    T value_;
};

}
