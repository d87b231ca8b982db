#include "tests/digest/Walk.h"

#include <gtest/gtest.h>

#include <cfenv>

namespace {

/// Numbers among which zeros, equal ones, tiny and large ones are frequent.
class Grid : public AnyGeometry {
public:
    using AnyGeometry::AnyGeometry;

    double number() override {
        static constexpr double some[] = {0, 0, 0, -0.0, 1, 1, -1, 2, 0.5, -3, 1e-9, 1e-200, -5e-324, 1e90};
        int const i = whole(0, 19);
        return i < 14 ? some[i] : AnyGeometry::number(-5, 5);
    }
};

/// On finite input, a finite result that does not overflow on its way comes without a floating-point exception that a
/// program may have switched on.
class Quiet : public walk::Results {
public:
    explicit Quiet(int round) : round_{round} { std::feclearexcept(FE_ALL_EXCEPT); }

protected:
    void computed(bool finite) override {
        int const raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
        ++count_;
        EXPECT_TRUE(!finite || raised == 0 || (raised & FE_OVERFLOW) != 0)
            << "result " << count_ << " of round " << round_ << " raises " << raised;
        std::feclearexcept(FE_ALL_EXCEPT);
    }
    bool takesAll(bool finite) override { return finite; }

private:
    int round_, count_ = 0;
};

TEST(FloatingPoint, FiniteResultsAreQuiet) {
    for (auto const& [name, results, rounds] : walk::rooms) {
        SCOPED_TRACE(name);
        Grid grid{20};
        for (int round = 0; round < 4000 && !HasFailure(); ++round) {
            Quiet quiet{round};
            results(grid, quiet);
        }
    }
}

}
