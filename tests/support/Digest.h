/// One number for many results: equal where every bit of them is equal. Every NaN counts as the same one.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

class Digest {
public:
    void add(std::uint64_t word) {
        value_ = (value_ ^ word) * 0x9e3779b97f4a7c15;
        value_ ^= value_ >> 32;
    }
    void add(double x) { add(std::isnan(x) ? 0x7ff8000000000000 : std::bit_cast<std::uint64_t>(x)); }

    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0;
};
