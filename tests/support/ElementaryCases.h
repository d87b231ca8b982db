/// The elementary functions and the arguments they are measured with: the same ones on every system. Where mpfr is
/// (ORN_TEST_MPFR), also how far a result is off.
#pragma once

#include "orn/geometry/Elementary.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

#ifdef ORN_TEST_MPFR
#include <mpfr.h>
#endif

namespace elementary {

struct Arguments {
    double x, y;
};

/// The doubles that come nearest to a multiple of a right angle.
inline std::vector<double> hardAngles() {
    std::ifstream file{ORN_HARD_ANGLES};
    std::string comment;
    std::getline(file, comment);
    return {std::istream_iterator<double>{file}, {}};
}

class Random {
public:
    std::uint64_t whole(std::uint64_t count) { return engine_() % count; }
    double between(double from, double to) {
        return from + (to - from) * static_cast<double>(engine_() >> 11) * 0x1p-53;
    }
    template <class Some>
    double oneOf(Some const& some) {
        return some[whole(std::size(some))];
    }
    double signedOne(double x) { return engine_() & 1 ? -x : x; }
    double magnitude(int from, int to) {
        int const exponent = from + static_cast<int>(whole(static_cast<std::uint64_t>(to - from)));
        return signedOne(std::ldexp(between(1, 2), exponent));
    }
    Arguments magnitudes(int from, int to) { return {magnitude(from, to), magnitude(from, to)}; }
    /// Up to three doubles away.
    double beside(double x) { return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) + whole(7) - 3); }

private:
    std::mt19937_64 engine_{2026};
};

struct Range {
    char const* name;
    Arguments (*next)(Random&);
};

inline constexpr Range ranges[] = {
    {"−8 to 8",
     [](Random& r) {
         return Arguments{r.between(-8, 8), r.between(-8, 8)};
     }},
    {"2^±6", [](Random& r) { return r.magnitudes(-6, 6); }},
    {"2^±60", [](Random& r) { return r.magnitudes(-60, 60); }},
    {"2^−1074 to 2^1024", [](Random& r) { return r.magnitudes(-1074, 1024); }},
    {"of like size",
     [](Random& r) {
         int const exponent = static_cast<int>(r.whole(2095)) - 1074;
         return r.magnitudes(exponent, exponent + 3);
     }},
    {"below 2^−1022", [](Random& r) { return r.magnitudes(-1074, -1022); }},
    {"beside right angles",
     [](Random& r) {
         double const x = r.signedOne(r.beside(static_cast<double>(1 + r.whole(1 << 21)) * 1.5707963267948966));
         return Arguments{x, r.beside(x * static_cast<double>(1 + r.whole(127)) / 64)};
     }},
    {"nearest to right angles, any size",
     [](Random& r) {
         static std::vector<double> const hardest = hardAngles();
         double const x = r.signedOne(r.oneOf(hardest));
         return Arguments{x, r.beside(x)};
     }},
    // The rows of the tables, the powers of two where the method changes, and the greatest doubles.
    {"beside switches of method",
     [](Random& r) {
         double const rows = r.signedOne(r.beside(static_cast<double>(1 + r.whole(1 << 10)) / 256));
         static constexpr int powers[] = {-1022, -400, -300, -60, -27, 0, 1, 2, 20, 60, 400, 500, 1023};
         double const power = r.signedOne(r.beside(std::ldexp(1, static_cast<int>(r.oneOf(powers)))));
         return r.whole(2) ? Arguments{rows, power} : Arguments{power, rows};
     }},
    // Their results are as annex F of the C standard says.
    {"zeros, infinities, none and the least",
     [](Random& r) {
         using limits = std::numeric_limits<double>;
         static constexpr double some[] = {0, 1, 2, limits::infinity(), limits::quiet_NaN(), limits::denorm_min()};
         return Arguments{r.signedOne(r.oneOf(some)), r.signedOne(r.oneOf(some))};
     }},
};

struct Function {
    char const* name;
    double (*here)(Arguments);
    bool even;  // in x; the others are odd, those of two arguments in y
    bool two;   // arguments
};

inline constexpr Function functions[] = {
    {"sine", [](Arguments a) { return ORN::sineAndCosine(a.x).sine; }, false, false},
    {"cosine", [](Arguments a) { return ORN::sineAndCosine(a.x).cosine; }, true, false},
    {"tangent", [](Arguments a) { return ORN::tangent(a.x); }, false, false},
    {"arc tangent", [](Arguments a) { return ORN::arcTangent(a.x); }, false, false},
    {"arc tangent of two", [](Arguments a) { return ORN::arcTangent(a.x, a.y); }, false, true},
    {"cube root", [](Arguments a) { return ORN::cubeRoot(a.x); }, false, false},
    {"hypotenuse", [](Arguments a) { return ORN::hypotenuse(a.x, a.y); }, true, true},
};

/// Also in sign; but every NaN is as good as another.
inline bool same(double a, double b) {
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

#ifdef ORN_TEST_MPFR
/// The same functions in the same order.
inline constexpr int (*exact[])(mpfr_ptr, mpfr_srcptr, mpfr_srcptr) = {
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr) { return mpfr_sin(r, x, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr) { return mpfr_cos(r, x, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr) { return mpfr_tan(r, x, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr) { return mpfr_atan(r, x, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr y) { return mpfr_atan2(r, x, y, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr) { return mpfr_cbrt(r, x, MPFR_RNDN); },
    [](mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr y) { return mpfr_hypot(r, x, y, MPFR_RNDN); },
};

/// The distance from the true value in units of the last place that a double of its size has.
class Error {
public:
    Error() { mpfr_inits2(160, result_, x_, y_, nullptr); }
    ~Error() { mpfr_clears(result_, x_, y_, nullptr); }
    Error(Error const&) = delete;
    Error& operator=(Error const&) = delete;

    double of(Function const& function, Arguments const& a, double got) {
        mpfr_set_d(x_, a.x, MPFR_RNDN);
        mpfr_set_d(y_, a.y, MPFR_RNDN);
        exact[&function - functions](result_, x_, y_);
        double const nearest = mpfr_get_d(result_, MPFR_RNDN);
        if (!std::isfinite(nearest) || nearest == 0 || !std::isfinite(got)) return same(nearest, got) ? 0 : HUGE_VAL;
        long const exponent = std::max(mpfr_get_exp(result_) - 53L, -1074L);
        mpfr_sub_d(result_, result_, got, MPFR_RNDN);
        mpfr_mul_2si(result_, result_, -exponent, MPFR_RNDN);
        return std::fabs(mpfr_get_d(result_, MPFR_RNDN));
    }

private:
    mpfr_t result_, x_, y_;
};
#endif

}
